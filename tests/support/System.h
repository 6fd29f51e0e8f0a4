// What tests ask of the system; the build chooses the file.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

namespace orif::test {

void SetEnvironment(const char* name, const std::string& value);

/// Stores a setting of the library. A test that does so leaves a harmless one behind.
void StoreSetting(const std::string& key, const std::string& value);

using Refusals = std::vector<std::pair<std::string, testing::Matcher<std::string>>>;

/// Names of components that are not to be had, `directory` having one without an entry point, and
/// what the trail tells of each.
Refusals UnusableComponents(const std::string& directory);

}  // namespace orif::test
