#include "scenario/Performer.h"

#include <exception>
#include <stdexcept>
#include <utility>

#include "HalL3MplsEncapsulationInterface.h"
#include "HalL3MplsEncapsulationUpdItf.h"

namespace scenario {
namespace {

void RegisterCallback(const std::string& name, Performer::Callback callback) {
  hal_encap::HalL3MplsEncapsulationUpdItf::GetInstance()->RegisterMplsUpdateClient(name, std::move(callback));
}

}  // namespace

Performer::~Performer() {
  const softcard::Record silence(card_.log(), softcard::CallLog::Recording::kNothing);
  for (const std::string& name : clients_) RegisterCallback(name, nullptr);
}

Trace Performer::Start() {
  return Perform([] {
    HalL3MplsEncapsulationInterface::GetInstance();
    return RequestResult{};
  });
}

Trace Performer::Perform(const Work& request) {
  if (under_way_) return {{}, {}, request(), false};
  under_way_ = true;
  card_.log().Clear();
  trace_ = {};
  try {
    trace_.result = request();
  } catch (const std::exception& exception) {
    trace_.result = {RequestResult::Kind::kThrew, 0, calls::Describe(exception)};
  }
  CollectEvents();
  under_way_ = false;
  depth_ = client_requests_ = 0;
  calling_.clear();
  return std::move(trace_);
}

void Performer::Register(const std::string& client, Callback callback) {
  clients_.insert(client);
  RegisterCallback(client, std::move(callback));
}

void Performer::Told(const std::string& client, int destination, unsigned port) {
  trace_.notifications.push_back({client, destination, static_cast<int>(port)});
  Note(trace_.notifications.back().Text());
}

void Performer::Note(const std::string& text) {
  CollectEvents();
  trace_.lines.push_back({ClientNote{text}, depth_});
}

RequestResult Performer::Deeper(const Work& request) {
  if (++client_requests_ > kMostClientRequests) {
    trace_.clients_went_on = true;
    throw std::runtime_error("update clients may make " + std::to_string(kMostClientRequests) +
                             " requests inside one request");
  }
  ++depth_;
  RequestResult result = request();
  CollectEvents();
  --depth_;
  return result;
}

void Performer::CollectEvents() {
  for (calls::Event& event : card_.log().Take()) trace_.lines.push_back({std::move(event), depth_});
}

}  // namespace scenario
