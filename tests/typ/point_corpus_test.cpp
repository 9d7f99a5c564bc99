// Point icons of real files: what we decode must show what their authors drew,
// and every record must come back byte for byte.
#include <gtest/gtest.h>

#include <map>

#include "support/harness.h"
#include "typ/curf_access.h"
#include "typ/header.h"
#include "typ/point_record.h"

using namespace korvex;
using korvex::testing::lines_of;

namespace {

// One picture as colours a pixel: "RRGGBB/alpha" or "none".
using Grid = std::vector<std::vector<std::string>>;

// "sym c #RRGGBB" [canal]alpha=a -> symbol and colour text.
std::pair<std::string, std::string> colour_of(const std::string& line, int cpp) {
    const std::string sym = line.substr(1, static_cast<size_t>(cpp));
    const std::string low = typ::lower(line);
    if (low.find("none") != std::string::npos) return {sym, "none"};
    const size_t hash = line.rfind('#');
    std::string colour = typ::upper(line.substr(hash + 1, 6));
    const size_t a = low.find("alpha=");
    colour += "/" + (a == std::string::npos ? std::string("0") : std::to_string(std::stoi(low.substr(a + 6))));
    return {sym, colour};
}

Grid grid_of(const std::vector<std::string>& colour_lines, const std::vector<std::string>& rows, int w, int cpp) {
    std::map<std::string, std::string> colours;
    for (const auto& l : colour_lines) colours.insert(colour_of(l, cpp));
    Grid g;
    for (const auto& row : rows) {
        std::vector<std::string> out;
        for (int x = 0; x < w; ++x) {
            auto it = colours.find(row.substr(static_cast<size_t>(x * cpp), static_cast<size_t>(cpp)));
            out.push_back(it == colours.end() ? "?" : it->second);
        }
        g.push_back(out);
    }
    return g;
}

// The picture of a [_point] with Type=0x<type> and SubType=0x<sub> in an
// author's text, rows without their quotes.
Grid author_picture(const std::string& text, const std::string& type, const std::string& sub, bool night) {
    const std::vector<std::string> lines = lines_of(text);
    const std::string key = night ? "nightxpm=" : "dayxpm=";
    for (size_t i = 0; i + 1 < lines.size(); ++i) {
        if (typ::lower(lines[i]) != "type=0x" + type || typ::lower(lines[i + 1]) != "subtype=0x" + sub) continue;
        size_t k = i;
        while (k < lines.size() && typ::lower(lines[k]).rfind(key, 0) != 0) ++k;
        if (k == lines.size()) break;
        int w = 0, h = 0, n = 0, cpp = 1;
        std::sscanf(lines[k].c_str() + lines[k].find('"') + 1, "%d %d %d %d", &w, &h, &n, &cpp);
        std::vector<std::string> colours, rows;
        for (++k; k < lines.size() && static_cast<int>(rows.size()) < h; ++k) {
            if (lines[k].empty() || lines[k][0] != '"') continue;
            if (static_cast<int>(colours.size()) < n) colours.push_back(lines[k]);
            else rows.push_back(lines[k].substr(1, lines[k].rfind('"') - 1));
        }
        return grid_of(colours, rows, w, cpp);
    }
    return {};
}

// Our picture of the point with the five type digits.
Grid our_picture(const model::Store& s, const std::string& digits, bool night) {
    for (int32_t n = 0; n < s.pt_n; ++n) {
        const auto r = static_cast<size_t>(n);
        if (s.pt_typ[r] != digits) continue;
        std::string col = s.pt_col[r];
        const size_t at = typ::lower(col).find("nightxpm");
        std::string xpm = s.pt_xpm[r];
        if (night) {
            if (at == std::string::npos) return {};
            xpm = col.substr(at, col.find('\n', at) - at);
            col = col.substr(at);
        } else if (at != std::string::npos) {
            col.resize(at);
        }
        int w = 0, h = 0, c = 0, cpp = 1;
        std::sscanf(xpm.c_str() + xpm.find('"') + 1, "%d %d %d %d", &w, &h, &c, &cpp);
        std::vector<std::string> colours;
        for (const auto& l : lines_of(col))
            if (!l.empty() && l[0] == '"') colours.push_back(l);
        return grid_of(colours, lines_of(night ? s.pt_nbmp[r] : s.pt_bmp[r]), w, cpp);
    }
    return {};
}

struct Icon {
    const char* file;
    const char* type;  // as the author's text writes it
    const char* sub;
    const char* digits;
    bool night;
    const char* why;
};

class PointCorpusIcon : public ::testing::TestWithParam<Icon> {};

TEST_P(PointCorpusIcon, ShowsWhatItsAuthorDrew) {
    const Icon icon = GetParam();
    const std::string dir = korvex::testing::corpus_dir();
    if (dir.empty()) GTEST_SKIP() << "no corpus";
    const std::string author = korvex::testing::read_bytes(dir + "/txt/" + icon.file + ".txt");
    const std::string binary = korvex::testing::read_bytes(dir + "/typ/" + icon.file + ".typ");
    ASSERT_FALSE(author.empty());
    ASSERT_FALSE(binary.empty());
    platform::ScriptedPrompt ui;
    model::Store s;
    korvex::testing::decode_bytes(s, ui, binary);

    const Grid expected = author_picture(author, icon.type, icon.sub, icon.night);
    ASSERT_FALSE(expected.empty()) << icon.why;
    EXPECT_EQ(our_picture(s, icon.digits, icon.night), expected) << icon.why;
}

INSTANTIATE_TEST_SUITE_P(
    ExactPairs, PointCorpusIcon,
    ::testing::Values(
        Icon{"stac47-mapnik", "064", "18", "06418", false, "mode 32, 3 colours, odd width: 2-bit pixels, no skips"},
        Icon{"stac47-mapnik", "02e", "0c", "02E0C", false, "mode 32, 15 colours, width 16: 4-bit pixels"},
        Icon{"suke-hike", "050", "00", "05000", false, "mode 16, 17 colours, odd width: a byte a pixel, no padding"},
        Icon{"suke-hike", "064", "0a", "0640A", false, "mode 32, 1 colour, 1 x 1"},
        Icon{"suke-tmz", "065", "11", "06511", false, "mode 32, 3 colours, width 7"},
        Icon{"aio-basemap", "01c", "02", "01C02", true, "night in mode 16 with 3 colours: 4-bit pixels"},
        Icon{"aio-basemap", "02f", "12", "02F12", true, "night in mode 32 with 60 colours, two characters a pixel"},
        Icon{"aio-basemap", "115", "0b", "1150B", false, "mode 16, 2 colours, 3 x 3"},
        Icon{"aio-basemap", "10f", "0a", "10F0A", false, "mode 32, 15 colours, width 8"}),
    [](const ::testing::TestParamInfo<Icon>& info) {
        std::string n = std::string(info.param.file) + "_" + info.param.digits + (info.param.night ? "_night" : "");
        for (char& c : n)
            if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
        return n;
    });

// Files whose point records our encoder writes exactly as their producers did
// (others differ only in padding bits or in label details).
class PointCorpusRecords : public ::testing::TestWithParam<const char*> {};

TEST_P(PointCorpusRecords, EveryRecordEncodesBackByteForByte) {
    const std::string dir = korvex::testing::corpus_dir();
    if (dir.empty()) GTEST_SKIP() << "no corpus";
    const std::string binary = korvex::testing::read_bytes(dir + "/typ/" + GetParam() + ".typ");
    ASSERT_FALSE(binary.empty());
    platform::ScriptedPrompt ui;
    model::Store s;
    korvex::testing::decode_bytes(s, ui, binary);
    s.curf = binary;
    const int64_t data = typ::curf_u32(s, typ::hdr::pt_data);
    const int64_t index = typ::curf_u32(s, typ::hdr::pt_index);
    const int recsize = typ::curf_u16(s, typ::hdr::pt_recsize);
    ASSERT_GT(s.pt_n, 0);
    for (int32_t n = 0; n < s.pt_n; ++n) {
        const int64_t entry = index + static_cast<int64_t>(n) * recsize;
        const int64_t at = data + (recsize == 4 ? typ::curf_u16(s, entry + 2) : typ::curf_u24(s, entry + 2));
        const std::string original = binary.substr(static_cast<size_t>(at), static_cast<size_t>(s.pt_len[static_cast<size_t>(n)]));
        EXPECT_EQ(typ::encode_point_record(s, n), original) << GetParam() << " point 0x" << s.pt_typ[static_cast<size_t>(n)];
    }
}

INSTANTIATE_TEST_SUITE_P(Files, PointCorpusRecords,
                         ::testing::Values("aio-basemap", "aio-basemap-2010", "aio-keepright", "jorisbo-jbm",
                                           "maptourist-m00001e0", "suke-tmz"),
                         [](const ::testing::TestParamInfo<const char*>& info) {
                             std::string n = info.param;
                             for (char& c : n)
                                 if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                             return n;
                         });

}  // namespace
