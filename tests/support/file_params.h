// Test names of the suites over files.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "support/harness.h"

namespace korvex::testing {

// A file parameter's test name (file_param_name), for INSTANTIATE_TEST_SUITE_P.
inline std::string file_test_name(const ::testing::TestParamInfo<std::string>& info) {
    return file_param_name(info.param);
}

}  // namespace korvex::testing
