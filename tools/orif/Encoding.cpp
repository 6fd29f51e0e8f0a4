#include "tools/orif/Encoding.h"

#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>

#include "live/UsageError.h"
#include "tools/orif/Error.h"
#include "tools/orif/Text.h"
#include "tools/orif/platform/platform.h"

namespace orif::tool {
namespace {

using platform::EncodingName;

constexpr const char* Utf8Name = "utf-8";

constexpr auto Encodings = std::to_array<EncodingName>({{Utf8Name, "UTF-8", 65001},
                                                        {"iso-8859-1", "ISO-8859-1", 28591},
                                                        {"latin-1", "ISO-8859-1", 28591},
                                                        {"iso-8859-2", "ISO-8859-2", 28592},
                                                        {"windows-1250", "CP1250", 1250},
                                                        {"windows-1252", "CP1252", 1252},
                                                        {"shift-jis", "CP932", 932},
                                                        {"gbk", "GBK", 936},
                                                        {"euc-kr", "CP949", 949},
                                                        {"big5", "CP950", 950}});

[[noreturn]] void RefuseCharacters(const std::string& encoding) {
  throw live::UsageError("the text has characters that are not in " + encoding);
}

}  // namespace

std::vector<std::string> EncodingNames() {
  std::vector<std::string> names;
  names.reserve(Encodings.size());
  for (const EncodingName& each : Encodings) names.emplace_back(each.said);
  return names;
}

void ConvertTexts(live::Settings& settings, const std::string& encoding) {
  if (encoding == Utf8Name) {
    settings.fromController = Utf8;
    settings.toController = [](std::string_view text) {
      if (Utf8(text) != text) RefuseCharacters(Utf8Name);
      return std::string(text);
    };
    return;
  }
  const auto* name = std::ranges::find(Encodings, encoding, &EncodingName::said);
  try {
    const auto system = std::make_shared<const platform::Encoding>(*name);
    settings.fromController = [system](std::string_view text) { return system->ToUtf8(text); };
    settings.toController = [system, encoding](std::string_view text) {
      const auto bytes = system->FromUtf8(text);
      if (!bytes) RefuseCharacters(encoding);
      return *bytes;
    };
  } catch (const std::runtime_error& error) {
    throw Error(Exit::Usage, error.what());
  }
}

}  // namespace orif::tool
