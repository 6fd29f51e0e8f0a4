// A JSON document that remembers where everything stood, so that whoever reads it can say what is
// wrong with which field in which line. Used by the readers of a scenario file; plain values.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace orif::sim {

/// "12: controllers[0].registers.R[3]: must be ..."; the file's name comes before it.
class Mistake : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct Node {
  nlohmann::json value;  // of an object or a list only the type
  std::string key;       // in its object
  std::string path;      // from the top
  std::size_t line = 1;
  std::vector<Node> children;  // of an object or a list, in the order of the file

  [[noreturn]] void Fail(const std::string& what) const;
  [[noreturn]] void FailType(const std::string& right) const;

  /// Throw a Mistake for a value of another type.
  const std::vector<Node>& List() const;
  const std::vector<Node>& Object() const;
  const std::string& Text() const;

  /// Throws a Mistake when this is no object or has a key that is not among `keys`.
  void CheckKeys(std::span<const std::string_view> keys) const;

  /// The child of that key, null when there is none.
  const Node* Find(std::string_view childKey) const;
};

/// Throws a Mistake for what is not JSON, and for a key that stands twice in an object.
Node ParseDocument(std::string_view text);

/// `, did you mean "word"?` with the most similar of `words`, or all of them when none is similar.
std::string Suggestion(std::string_view wrong, std::span<const std::string_view> words);

}  // namespace orif::sim
