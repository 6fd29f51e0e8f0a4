// A JSON document that remembers where everything was, so that an error can name the line and the
// field. Plain values.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace orif::sim {

/// "12: controllers[0].registers.R[3]: must be ..."; LoadScenario puts the file's name in front.
class Mistake : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct Node {
  nlohmann::json value;  // for an object or a list only its type
  std::string key;       // within its object
  std::string path;      // from the top
  std::size_t line = 1;
  std::vector<Node> children;  // of an object or a list, in file order

  /// Throws a Mistake about this node.
  [[noreturn]] void Fail(const std::string& what) const;
  /// The same, for a value that is not of the type `right`.
  [[noreturn]] void FailType(const std::string& right) const;

  /// These throw a Mistake if the value is of another type.
  const std::vector<Node>& List() const;
  const std::vector<Node>& Object() const;
  const std::string& Text() const;

  /// Throws a Mistake if this is no object or has a key that is not among `keys`.
  void CheckKeys(std::span<const std::string_view> keys) const;

  /// The child of that key, or null.
  const Node* Find(std::string_view childKey) const;
  /// The child of that key; throws a Mistake if there is none.
  const Node& At(std::string_view childKey) const;
};

/// Whether a document may have comments, as in C++.
enum class Comments { Refused, Allowed };

/// Throws a Mistake for text that is not JSON, and for a key that appears twice in an object.
Node ParseDocument(std::string_view text, Comments comments = Comments::Refused);

/// `, did you mean "word"?` with the most similar of `words`, or all of them if none is similar.
std::string Suggestion(std::string_view wrong, std::span<const std::string_view> words);

}  // namespace orif::sim
