// In place of Page.cpp where the tool is built without the page.
#include "tools/orif/Error.h"
#include "tools/orif/Page.h"

namespace orif::tool {

struct Page::Self {};

Page::Page(const std::string& /*where*/, const std::string& /*tokenFile*/,
           const std::string& /*cell*/) {
  throw Error(Exit::Usage, "this orif was built without the page");
}

Page::~Page() = default;

void Page::Show(const live::Controller& /*controller*/) {}

}  // namespace orif::tool
