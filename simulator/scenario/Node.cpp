#include "simulator/scenario/Node.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "spelling/EditDistance.h"

namespace orif::sim {
namespace {

using nlohmann::json;

std::string TypeName(const json& value) {
  switch (value.type()) {
    case json::value_t::null:
      return "null";
    case json::value_t::object:
      return "an object";
    case json::value_t::array:
      return "a list";
    case json::value_t::string:
      return "a text";
    case json::value_t::boolean:
      return "true or false";
    default:
      return "a number";
  }
}

const Node& Expect(const Node& node, const json& type) {
  if (node.value.type() != type.type()) node.FailType(TypeName(type));
  return node;
}

// The place of the last character read that is not blank. Reading a number also takes the character
// after it, which may be the end of the line.
struct Place {
  std::size_t line = 1;
  std::size_t column = 0;
};

// The characters of a document, for the JSON library; keeps track of the place.
class Reading {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  Reading(const char* at, Place& place) : at_(at), place_(&place) {}

  reference operator*() const { return *at_; }
  Reading& operator++() {
    if (*at_ == '\n') {
      here_ = {here_.line + 1, 0};
    } else {
      ++here_.column;
      if (*at_ != ' ' && *at_ != '\t' && *at_ != '\r') *place_ = here_;
    }
    ++at_;
    return *this;
  }
  bool operator==(const Reading& other) const { return at_ == other.at_; }

 private:
  const char* at_;
  Place* place_;
  Place here_;
};

class Builder final : public nlohmann::json_sax<json> {
 public:
  explicit Builder(const Place& place) : place_(&place) {}

  Node Document() && { return std::move(document_); }

  bool null() override { return Add(nullptr); }
  bool boolean(bool value) override { return Add(value); }
  bool number_integer(std::int64_t value) override { return Add(value); }
  bool number_unsigned(std::uint64_t value) override { return Add(value); }
  bool number_float(double value, const std::string& /*text*/) override { return Add(value); }
  bool string(std::string& value) override { return Add(std::move(value)); }
  bool binary(json::binary_t& /*value*/) override { return false; }
  bool start_object(std::size_t /*size*/) override { return Add(json::object()); }
  bool end_object() override { return Close(); }
  bool start_array(std::size_t /*size*/) override { return Add(json::array()); }
  bool end_array() override { return Close(); }

  bool key(std::string& key) override {
    key_ = key;
    if (!open_.back().keys.insert(key).second) Child({}).Fail("stands here twice");
    return true;
  }

  bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                   const json::exception& error) override {
    // Keep only what is wrong: the library puts its own idea of the place in front.
    std::string_view what = error.what();
    for (const std::string_view before : {"] ", "column ", ": "}) {
      const std::size_t found = what.find(before);
      if (found != what.npos) what.remove_prefix(found + before.size());
    }
    throw Mistake(std::to_string(place_->line) + ":" + std::to_string(place_->column) + ": " +
                  std::string(what));
  }

 private:
  struct Opened {
    Node* node;
    std::set<std::string> keys;
  };

  // A node for the value that has just been read.
  Node Child(json value) const {
    Node child{std::move(value), key_, key_, place_->line, {}};
    if (open_.empty()) return child;
    const Node& parent = *open_.back().node;
    child.path = parent.value.is_array()
                     ? parent.path + '[' + std::to_string(parent.children.size()) + ']'
                     : parent.path + (parent.path.empty() ? "" : ".") + key_;
    return child;
  }

  bool Add(json value) {
    constexpr std::size_t DeepEnough = 16;
    Node child = Child(std::move(value));
    const bool opens = child.value.is_structured();
    if (open_.size() == DeepEnough) child.Fail("is nested too deeply");
    Node& added = open_.empty() ? document_ : open_.back().node->children.emplace_back();
    added = std::move(child);
    if (opens) open_.push_back({&added, {}});
    return true;
  }

  bool Close() {
    open_.pop_back();
    return true;
  }

  const Place* place_;
  Node document_;
  std::string key_;
  std::vector<Opened> open_;  // from the document down to the current node
};

}  // namespace

void Node::Fail(const std::string& what) const {
  throw Mistake(std::to_string(line) + ": " + (path.empty() ? "" : path + ": ") + what);
}

void Node::FailType(const std::string& right) const {
  Fail("must be " + right + ", not " + TypeName(value));
}

const std::vector<Node>& Node::List() const { return Expect(*this, json::array()).children; }
const std::vector<Node>& Node::Object() const { return Expect(*this, json::object()).children; }
const std::string& Node::Text() const {
  return Expect(*this, "").value.get_ref<const std::string&>();
}

void Node::CheckKeys(std::span<const std::string_view> keys) const {
  for (const Node& child : Object()) {
    if (std::ranges::find(keys, child.key) == keys.end()) {
      child.Fail("is not known here" + Suggestion(child.key, keys));
    }
  }
}

const Node* Node::Find(std::string_view childKey) const {
  const auto found = std::ranges::find(children, childKey, &Node::key);
  return found == children.end() ? nullptr : &*found;
}

const Node& Node::At(std::string_view childKey) const {
  const Node* child = Find(childKey);
  if (child == nullptr) Fail("must have \"" + std::string(childKey) + '"');
  return *child;
}

Node ParseDocument(std::string_view text, Comments comments) {
  Place place;
  Builder builder(place);
  json::sax_parse(Reading(text.data(), place), Reading(text.data() + text.size(), place), &builder,
                  json::input_format_t::json, true, comments == Comments::Allowed);
  return std::move(builder).Document();
}

std::string Suggestion(std::string_view wrong, std::span<const std::string_view> words) {
  const auto distance = [wrong](std::string_view word) {
    return spelling::EditDistance(wrong, word);
  };
  const auto nearest = std::ranges::min_element(words, {}, distance);
  const bool similar = nearest != words.end() && distance(*nearest) * 2 <= nearest->size();
  if (similar) return ", did you mean \"" + std::string(*nearest) + "\"?";
  std::string all;
  for (const std::string_view word : words) all.append(all.empty() ? "" : ", ").append(word);
  return "; known are " + all;
}

}  // namespace orif::sim
