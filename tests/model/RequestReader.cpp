#include "tests/model/RequestReader.h"

#include <set>
#include <stdexcept>

#include "scenario/Language.h"
#include "scenario/Requests.h"
#include "scenario/SyntaxError.h"
#include "softcard/LimId.h"

namespace model {
namespace {

const scenario::Language& TheLanguage() {
  static scenario::Language language;
  if (language.statements().empty()) AddStandard(language);
  return language;
}

Operation ToOperation(const std::string& name) {
  for (int i = 0; i < kOperations; ++i) {
    if (name == Name(static_cast<Operation>(i))) return static_cast<Operation>(i);
  }
  throw std::invalid_argument(name + " is no request");
}

ClientKind ToClientKind(std::string_view behaviour) {
  if (behaviour == "notify") return ClientKind::kRecords;
  if (behaviour == "empty") return ClientKind::kEmpty;
  if (behaviour == "throw") return ClientKind::kThrows;
  throw std::invalid_argument("clients that call are made elsewhere");
}

int64_t ToNumber(const std::array<unsigned char, 6>& mac) {
  int64_t number = 0;
  for (const unsigned char byte : mac) number = number << 8 | byte;
  return number;
}

template <typename Enumeration>
void Append(const std::vector<Enumeration>& from, std::vector<int>& items) {
  for (const Enumeration item : from) items.push_back(static_cast<int>(item));
}

void Take(const scenario::RequestArguments& arguments, const scenario::Fields& fields, Request& request) {
  const bool about_vrf = request.operation == Operation::kInstallVrf || request.operation == Operation::kDestroyVrf;
  (about_vrf ? request.vrf : request.dest) = arguments.id;
  if (fields.Find("vlan") != nullptr) request.base = arguments.vlan_destination_id;
  if (fields.Find("lim") != nullptr) request.limid = softcard::LimIdName(arguments.limid);
  if (fields.Find("vrf") != nullptr) request.vrf = arguments.vrf;
  if (fields.Find("mtu") != nullptr) request.mtu = arguments.mtu;
  if (fields.Find("mac") != nullptr) request.mac = arguments.mac ? ToNumber(*arguments.mac) : kNullMac;
  Append(arguments.vlan_capabilities, request.items);
  Append(arguments.actions, request.items);
  Append(arguments.mpls_capabilities, request.items);
  request.labels = arguments.labels;
  request.action = arguments.action;
}

Request Read(const std::vector<scenario::Token>& words) {
  const softcard::CardDescription card;
  std::set<std::string> clients;
  std::set<scenario::Observer*> watchers;
  TheLanguage().Read(words, {card, {}, clients, watchers});
  Request request{};
  request.operation = ToOperation(std::string(words[0].text));
  if (request.operation == Operation::kRegister) {
    request.client = words[1].text;
    request.kind = ToClientKind(words[2].text);
    return request;
  }
  const scenario::Fields fields(TheLanguage().Find(words[0].text)->form, words, 1);
  Take(scenario::ReadRequest(fields, card), fields, request);
  return request;
}

}  // namespace

Request ReadRequest(const std::string& line) try {
  scenario::Texts texts;
  return Read(scenario::Tokenize(line, texts));
} catch (const scenario::SyntaxError& error) {
  throw std::invalid_argument(line + ": " + error.message);
}

}  // namespace model
