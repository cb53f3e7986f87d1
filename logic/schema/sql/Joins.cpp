#include "logic/schema/sql/Joins.h"

#include <algorithm>

#include "logic/schema/structure/StructureText.h"

namespace tessel {

namespace {

/// One further table, and the key by which it is joined.
struct Step {
  std::string table;
  const ForeignKey* key;
};

std::string FullField(const std::string& table, const std::string& field,
                      const NameQuoting& quoting) {
  return quoting.Table(table) + "." + quoting.Name(field);
}

std::string Condition(const ForeignKey& key, const NameQuoting& quoting) {
  std::string text;
  for (std::size_t i = 0; i < key.fields.size(); ++i)
    text += (i == 0 ? "" : " AND ") + FullField(key.table, key.fields[i], quoting) + " = " +
            FullField(key.toTable, key.toFields[i], quoting);
  return text;
}

std::string FieldList(const std::vector<TickedTable>& ticked, const NameQuoting& quoting) {
  std::string list;
  for (const TickedTable& table : ticked)
    for (const std::string& field : table.fields)
      list += (list.empty() ? "" : ", ") + FullField(table.name, field, quoting);
  return list;
}

JoinOffer Offer(const std::vector<TickedTable>& ticked, const std::vector<Step>& steps,
                const NameQuoting& quoting) {
  JoinOffer offer;
  offer.sql =
      "SELECT " + FieldList(ticked, quoting) + "\r\nFROM " + quoting.Table(ticked.front().name);
  for (const Step& step : steps) {
    offer.caption += (offer.caption.empty() ? "" : ", ") + KeyCondition(*step.key);
    offer.sql += "\r\nJOIN " + quoting.Table(step.table) + " ON " + Condition(*step.key, quoting);
  }
  offer.sql += "\r\n";
  return offer;
}

bool Joins(const ForeignKey& key, const std::string& one, const std::string& other) {
  return (key.table == one && key.toTable == other) || (key.table == other && key.toTable == one);
}

/// The way from the first table to all others; empty when there is none.
std::vector<Step> WayToAll(const std::vector<TickedTable>& ticked,
                           const std::vector<ForeignKey>& keys) {
  std::vector<std::string> reached = {ticked.front().name};
  std::vector<Step> steps;
  for (std::size_t i = 0; i < reached.size(); ++i)
    for (const TickedTable& table : ticked) {
      if (std::ranges::find(reached, table.name) != reached.end()) continue;
      const auto key = std::ranges::find_if(
          keys, [&](const ForeignKey& k) { return Joins(k, reached[i], table.name); });
      if (key == keys.end()) continue;
      steps.push_back({table.name, &*key});
      reached.push_back(table.name);
    }
  return reached.size() == ticked.size() ? steps : std::vector<Step>();
}

}  // namespace

std::vector<JoinOffer> JoinOffers(const std::vector<TickedTable>& ticked,
                                  const std::vector<ForeignKey>& keys, const NameQuoting& quoting) {
  std::vector<JoinOffer> offers;
  if (ticked.size() < 2) return offers;
  if (ticked.size() == 2) {
    for (const ForeignKey& key : keys)
      if (Joins(key, ticked[0].name, ticked[1].name))
        offers.push_back(Offer(ticked, {{ticked[1].name, &key}}, quoting));
    return offers;
  }
  const std::vector<Step> steps = WayToAll(ticked, keys);
  if (!steps.empty()) offers.push_back(Offer(ticked, steps, quoting));
  return offers;
}

}  // namespace tessel
