// The files of the page, compiled in. Made of assets/ and Chart.js when the page is built.
#pragma once

#include <string_view>

namespace orif::page {

std::string_view Asset_index_html();
std::string_view Asset_login_html();
std::string_view Asset_page_css();
std::string_view Asset_page_js();
std::string_view Asset_chart_min_js();

}  // namespace orif::page
