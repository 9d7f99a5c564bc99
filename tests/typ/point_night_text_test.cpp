// A night picture whose colours stand only in the element's text (as a
// panel edit may leave it) is encoded all the same.
#include <gtest/gtest.h>

#include "support/harness.h"
#include "typ/point_record.h"

using namespace korvex;
using namespace korvex::testing;

TEST(PointNight, ColoursInTheTextOnlyStillMakeTheNightPicture) {
    platform::ScriptedPrompt ui;
    model::Store s;
    decode_bytes(s, ui, read_bytes(source_dir() + "/data/samples/sample.typ"));
    int32_t row = -1;
    for (int32_t n = 0; n < s.pt_n; ++n)
        if (s.pt_col[static_cast<size_t>(n)].find("NightXpm") != std::string::npos) row = n;
    ASSERT_GE(row, 0) << "the sample has a point with a night picture";
    const auto r = static_cast<size_t>(row);
    const std::string whole = typ::encode_point_record(s, row);

    s.pt_col[r] = s.pt_col[r].substr(0, s.pt_col[r].find("\r\nNightXpm"));
    ASSERT_NE(s.pt_txt[r].find("NightXpm"), std::string::npos);
    EXPECT_EQ(typ::encode_point_record(s, row), whole);
}
