// Mutations that know what inputs are made of: tokens are moved about, and pieces of a small grammar put between them.
#pragma once

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace fuzz
{

using Random = std::minstd_rand;

/// Alternatives by name. Within one, {name} stands for an alternative of that name. The first alternative is taken when
/// a text gets too deep, so it must come to an end. "input" makes whole inputs.
using Grammar = std::map<std::string, std::vector<std::string>>;

/// A text of this name.
std::string expand(const Grammar& grammar, const std::string& name, Random& random);

/// Changes an input: its bytes, its tokens, or all of it. Tokens end before and behind each of `delimiters`.
std::size_t mutate(const Grammar& grammar, const std::string& delimiters, std::uint8_t* data, std::size_t size,
                   std::size_t maxSize, unsigned int seed);

/// The delimiters of XML.
constexpr const char* xmlDelimiters = "<>&;\"=\x1e";

} // namespace fuzz
