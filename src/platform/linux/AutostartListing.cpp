#include "platform/linux/AutostartListing.h"

#include <algorithm>
#include <map>
#include <utility>

#include "platform/linux/AutostartNames.h"
#include "platform/linux/Text.h"

namespace tallowin::platform::linux_host {
namespace {

using Identity = std::pair<std::size_t, std::string>;

Identity IdentityOf(const AutostartRow& row) {
  return {row.source, row.source == AutostartRow::kStored ? row.fullName : row.entry.name};
}

std::vector<AutostartRow> AllRows(const std::vector<StoredValue>& stored,
                                  const AutostartListing::Live& live) {
  std::vector<AutostartRow> rows;
  rows.reserve(stored.size());
  for (const StoredValue& value : stored) {
    rows.push_back({.fullName = value.name, .value = value.value});
  }
  for (std::size_t source = 0; source < live.size(); ++source) {
    for (const AutostartEntry& entry : live[source]) {
      rows.push_back({.fullName = Printable(entry.name),
                      .value = RegistryValue::Text(Printable(entry.command)),
                      .source = source,
                      .entry = entry});
    }
  }
  return rows;
}

/// Stay: as it was before, at its place. Changed: known, with another command.
enum class Age { Stay, Changed, New };

struct Rank {
  Age age = Age::New;
  std::size_t place = 0;     // of what stays
  std::int64_t changed = 0;  // of the others

  friend auto operator<=>(const Rank&, const Rank&) = default;
};

Rank RankOf(const AutostartRow& row, const AutostartRow* before, std::size_t place) {
  if (before == nullptr) return {.changed = row.entry.changed};
  // A stored value that is written again keeps its place.
  if (row.source == AutostartRow::kStored || row.value == before->value) {
    return {.age = Age::Stay, .place = place};
  }
  return {.age = Age::Changed, .changed = row.entry.changed};
}

}  // namespace

AutostartListing::AutostartListing(const AutostartListing& before,
                                   const std::vector<StoredValue>& stored, const Live& live) {
  std::map<Identity, std::size_t> places;
  for (std::size_t i = 0; i < before.rows_.size(); ++i) places[IdentityOf(before.rows_[i])] = i;

  std::vector<AutostartRow> rows = AllRows(stored, live);
  std::vector<std::pair<Rank, std::size_t>> order;
  UniqueNames names;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto place = places.find(IdentityOf(rows[i]));
    const bool known = place != places.end();
    const AutostartRow* old = known ? &before.rows_[place->second] : nullptr;
    order.emplace_back(RankOf(rows[i], old, known ? place->second : 0), i);
    if (!known) continue;
    rows[i].name = old->name;
    names.Take(old->name);
  }
  std::ranges::sort(order);
  for (const auto& [rank, index] : order) {
    AutostartRow& row = rows[index];
    if (rank.age == Age::New) row.name = names.Make(row.fullName);
    rows_.push_back(std::move(row));
  }
}

const AutostartRow* AutostartListing::Find(std::string_view name) const {
  const std::string folded = CaseFolded(name);
  const auto first = [&](auto matches) {
    const auto row = std::ranges::find_if(rows_, matches);
    return row == rows_.end() ? nullptr : &*row;
  };
  const AutostartRow* row = first([&](const AutostartRow& each) { return each.name == name; });
  if (row != nullptr) return row;
  const auto isLong = [](const AutostartRow& each) {
    return each.fullName.size() > kEnumerableBytes;
  };
  row = first([&](const AutostartRow& each) { return isLong(each) && each.fullName == name; });
  if (row != nullptr) return row;
  // A live entry answers to no name but its own: the one that was asked for may just have gone.
  return first([&](const AutostartRow& each) {
    return each.source == AutostartRow::kStored && (each.name == each.fullName || isLong(each)) &&
           CaseFolded(each.fullName) == folded;
  });
}

}  // namespace tallowin::platform::linux_host
