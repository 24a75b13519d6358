#include "headless_host/headless_host.hpp"
#include "tests/headless_host/export_sizes.hpp"

#include <gtest/gtest.h>

namespace velm {
namespace {

TEST(RequestsOfAnExport, AreCountedBeforehand)
{
    for (const ExportSize& row : export_sizes) {
        Model model;
        row.fill(model);
        EXPECT_EQ(requests_of_an_export(model), requests_for_an_empty_model + row.more_requests) << row.what;
    }
}

} // namespace
} // namespace velm
