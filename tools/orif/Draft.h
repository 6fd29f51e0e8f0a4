// A file of one piece while it is made.
#pragma once

#include <filesystem>
#include <system_error>

namespace orif::tool {

/// Whether there may be a file of that name, or a link: where that cannot be found out, there may.
bool MayExist(const std::filesystem::path& file);

/// Throws an Error, Exit::Usage, if there is a file of that name, or a link.
void RefuseIfThere(const std::filesystem::path& file);

/// A file next to the one that is wanted. Removed at the end unless Kept. The members throw an
/// Error with the system's reason.
class Draft {
 public:
  explicit Draft(const std::filesystem::path& wanted);
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;
  ~Draft();

  const std::filesystem::path& Path() const { return path_; }

  /// Puts it in the place of the one that is wanted.
  void Keep() const;

 private:
  std::filesystem::path wanted_;
  std::filesystem::path path_;
};

/// Throws an Error: the file cannot be written, with the system's reason.
[[noreturn]] void CannotWrite(const std::filesystem::path& file, const std::system_error& error);

}  // namespace orif::tool
