#include "Change.h"

#include <algorithm>
#include <array>
#include <sodium.h>

#include "Changes.h"

namespace cli::diff
{
namespace
{

/// Where it is told: by its line of the new map, or of the old one where it has no other.
std::uint32_t order(const Change& change)
{
  return change.newPlace ? change.newPlace->begin : change.oldPlace->begin;
}

} // namespace

std::vector<Change> changesOf(const check::MapText& oldMap, const check::MapText& newMap)
{
  const Side before(oldMap);
  const Side after(newMap);
  Changes changes(before, after);
  const Matching matching = matched(before, after);
  lookForItems(matching, changes);
  for (const Pair& pair : matching.pairs)
    lookForColumns(pair, changes);
  lookForCells(matching, changes);
  lookForSchemas(changes);
  lookForDuplicates(changes);
  std::vector<Change> all = changes.take();
  std::stable_sort(all.begin(), all.end(),
                   [](const Change& lhs, const Change& rhs) {
                     return std::make_tuple(order(lhs), lhs.rule, lhs.subject) <
                            std::make_tuple(order(rhs), rhs.rule, rhs.subject);
                   });
  return all;
}

std::string fingerprint(const Change& change)
{
  // Sizes keep apart what would join to the same text.
  std::string named;
  for (const std::string& part : {std::string(change.rule->id), change.subject, change.before, change.after})
    named += std::to_string(part.size()) + ":" + part;
  std::array<unsigned char, crypto_hash_sha256_BYTES> digest{};
  crypto_hash_sha256(digest.data(), reinterpret_cast<const unsigned char*>(named.data()), named.size());
  std::array<char, 2 * crypto_hash_sha256_BYTES + 1> text{};
  sodium_bin2hex(text.data(), text.size(), digest.data(), digest.size());
  return std::string(text.data()).substr(0, 32);
}

} // namespace cli::diff
