#include <gtest/gtest.h>

#include <map>

#include "calls/Functions.h"
#include "tests/model/Signatures.h"

// The model's table is written independently of the descriptions that everything else is made from.
TEST(TheModelsTable, NamesTheFunctionsThatProgramOrAskTheCardAndTheirArguments) {
  std::map<std::string, std::string> described;
  for (const calls::Function& function : calls::kFunctions) {
    if (function.purpose != calls::Purpose::kCall) continue;
    std::string& names = described[function.name];
    for (int i = 0; i < function.argument_count(); ++i) names += std::string(function.arguments[i].name) + ' ';
  }
  std::map<std::string, std::string> modelled;
  for (const auto& signature : model::kSignatures) {
    std::string& names = modelled[signature.function];
    const std::string format = signature.format;
    for (std::size_t begin = 0, equals = 0; (equals = format.find('=', begin)) != std::string::npos;) {
      names += format.substr(begin, equals - begin) + ' ';
      begin = std::min(format.find(", ", equals), format.size() - 2) + 2;
    }
  }
  // The module never asks for it: it has no result that anything depends on but the start-up.
  described.erase("fm_init");
  EXPECT_EQ(modelled, described);
}
