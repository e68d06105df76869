// The binding report: every binding contributed for a key sequence (the
// defaults of each installed part and the user's own), which one is in force
// and why. It only reads the tables.
#include <set>

#include "orvane/accel.h"

namespace Kf::Accel {
namespace {

// Keys by KeySequence order, held by pointer into tables that outlive the set.
struct KeyPointerLess {
  bool operator()(const KeySequence* a, const KeySequence* b) const { return *a < *b; }
};

}  // namespace

std::vector<BindingReport> AccelManager::GetBindingReport(const KeySequence& key) {
  std::set<const KeySequence*, KeyPointerLess> keys;
  if (key) {
    keys.insert(&key);
  } else {
    for (const AccelPart& part : installedParts_)
      for (const AccelEntry& entry : part.entries)
        if (entry.key) keys.insert(&entry.key);
    for (const auto& [bound, command] : primary) keys.insert(&bound);
    for (const auto& [bound, command] : secondary) keys.insert(&bound);
  }

  std::vector<BindingReport> reports;
  for (const KeySequence* k : keys) {
    BindingReport report;
    report.key = KeySequence(*k);
    for (std::size_t p = 0; p < installedParts_.size(); ++p) {
      const AccelPart& part = installedParts_[p];
      for (const AccelEntry& entry : part.entries)
        if (entry.key && entry.key == *k)
          report.sources.push_back({BindingSource::PartDefault, static_cast<int>(p), part.type == AccelPart::Primary,
                                    entry.command});
    }
    const std::size_t partSources = report.sources.size();

    auto inPrimary = primary.find(*k);
    auto inSecondary = secondary.find(*k);
    if (inPrimary != primary.end() || inSecondary != secondary.end()) {
      report.bound = true;
      report.boundPrimary = inPrimary != primary.end();
      report.command = report.boundPrimary ? inPrimary->second : inSecondary->second;
    }

    // A binding in force that no installed part contributed to its table came
    // from the user (stored settings or the host's own table edits).
    const BindingSource* winner = nullptr;
    for (const BindingSource& source : report.sources)
      if (report.bound && source.primary == report.boundPrimary && source.command == report.command) {
        winner = &source;
        break;
      }
    if (report.bound && !winner) {
      report.sources.push_back({BindingSource::User, -1, report.boundPrimary, report.command});
      report.reason = partSources ? "user binding; user bindings win over the defaults" : "user binding";
    } else if (report.bound) {
      report.reason = partSources > 1 ? "default of part " + std::to_string(winner->partIndex) +
                                            "; the first part installed wins"
                                      : "default of part " + std::to_string(winner->partIndex);
    } else if (partSources) {
      const BindingSource& first = report.sources.front();
      if (first.primary && CommandIsInSet(first.command, primary))
        report.reason = "not bound: \"" + first.command + "\" already has a primary key (one primary key per command)";
      else
        report.reason = "not bound: the user removed this default";
    }

    const bool firstIsInForce = !report.sources.empty() && report.bound &&
                                report.sources.front().primary == report.boundPrimary &&
                                report.sources.front().command == report.command;
    const bool conflict = report.sources.size() >= 2 || (!report.sources.empty() && !firstIsInForce);
    if (key || conflict) reports.push_back(std::move(report));
  }
  return reports;
}

}  // namespace Kf::Accel
