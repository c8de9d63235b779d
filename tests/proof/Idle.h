#ifndef TESTS_PROOF_IDLE_H
#define TESTS_PROOF_IDLE_H

#include "tests/model/Subject.h"
#include "tests/proof/Allocations.h"

/// The blocks that stay allocated when the card is empty and every update client is silent.
inline long LiveBlocksWhenIdle() {
  {
    model::Subject subject;
    for (const auto* name : {"a", "b", "B", "ab"}) {
      model::Request client{};
      client.operation = model::Operation::kRegister;
      client.client = name;
      client.kind = model::ClientKind::kEmpty;
      subject.Make(client);
    }
  }
  softcard::Card::Get().Reset();
  softcard::Card::Get().log() = {};
  return allocations::Live();
}

#endif
