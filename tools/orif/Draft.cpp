#include "tools/orif/Draft.h"

#include "tools/orif/Error.h"
#include "tools/orif/NameBeside.h"
#include "tools/orif/platform/platform.h"

namespace orif::tool {

bool MayExist(const std::filesystem::path& file) {
  std::error_code ignored;
  return symlink_status(file, ignored).type() != std::filesystem::file_type::not_found;
}

void RefuseIfThere(const std::filesystem::path& file) {
  if (!MayExist(file)) return;
  throw Error(Exit::Usage,
              file.string() + " exists; name another file, or replace it with --force");
}

void CannotWrite(const std::filesystem::path& file, const std::system_error& error) {
  throw Error(Exit::Usage, "cannot write " + file.string() + ": " + error.code().message());
}

Draft::Draft(const std::filesystem::path& wanted) : wanted_(wanted), path_(NameBeside(wanted)) {
  try {
    const platform::AppendedFile made(path_.string(), platform::AppendedFile::Begin::New);
  } catch (const std::system_error& error) {
    CannotWrite(wanted_, error);
  }
}

Draft::~Draft() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

void Draft::Keep() const {
  try {
    platform::PutInPlaceOf(wanted_.string(), path_.string(), nullptr);
  } catch (const std::system_error& error) {
    CannotWrite(wanted_, error);
  }
}

}  // namespace orif::tool
