#include "Utilities/Export/Version"
#include "Utilities/Export/velm_export/sections.hpp"
#include "host_link/request.hpp"

using namespace velm;

namespace {

/// Posts one line of the build information: its field of N characters and one more NUL.
template <std::size_t N>
void post_line(std::string_view line)
{
    // a line that is too long is cut, so that its own NUL has room
    const Text<N> field = nul_ended<N>(line.substr(0, N - 1));
    Text<N + 1> fragment{};
    std::copy(field.begin(), field.end(), fragment.begin());
    request<"PINFOHTML">(fragment);
}

} // namespace

void intro()
{
    request<"PINFOHTML">(R"(<center><body><table style="text-align: left; width: 332px; height: 284px;")");
    request<"PINFOHTML">(R"(border="1" cellpadding="2" cellspacing="2"><tbody>)");
    request<"PINFOHTML">(R"(<tr style="font-weight: bold; color: white;"align="center">)");
    request<"PINFOHTML">(R"(<td style="background-color: blue;">)");
    request<"PINFOHTML">("VELM Export Utility Version Information</td></tr>");
    request<"PINFOHTML">(R"(<tr style="font-weight: bold;" align="Left"><td>)");
    post_line<30>(build_information::banner);
    request<"PINFOHTML">(R"(</td></tr><tr style="font-weight: bold;" align="Left"><td>)");
    post_line<30>(build_information::model_revision);
    request<"PINFOHTML">("</td></tr>");
    request<"PINFOHTML">(R"(<tr style="font-weight: bold;" align="Left"><td>)");
    post_line<50>(build_information::build_time);
    request<"PINFOHTML">(R"(</td></tr><tr style="font-weight: bold;" align="Left"><td>)");
    post_line<30>(build_information::model_branch);
    request<"PINFOHTML">(R"(</td></tr><tr style="font-weight: bold;" align="Left"><td>)");
    post_line<30>(build_information::interface_revision);
    request<"PINFOHTML">(R"(</td></tr><tr style="font-weight: bold;" align="Left"><td>)");
    post_line<30>(build_information::interface_branch);
    request<"PINFOHTML">(R"(</td></tr><tr style="font-weight: bold;" align="Left"><td>)");
    post_line<30>(build_information::platform);
    request<"PINFOHTML">(R"(</td></tr><tr style="font-weight: bold;" align="Left"><td>)");
    post_line<30>(build_information::architecture);
    request<"PINFOHTML">(R"(</td></tr><tr style="font-weight: bold;" align="Left"><td>)");
    post_line<30>(build_information::build_type);
    request<"PINFOHTML">("</td></tr></tbody></table><br></body></Center>");
}
