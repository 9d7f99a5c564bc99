// korvex-cli check and repair as a map pipeline runs them: one planted fault
// of each kind is found once with its type, the JSON parses and is the same
// on every run, the exit status tells clean, findings and unreadable apart,
// and a repair writes a file the check passes.
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "cli/cli_fixture.h"
#include "platform/codepage.h"
#include "support/harness.h"

namespace check_command_test {

using namespace korvex::testing;
using namespace korvex::testing::cli_fixture;

struct Found {
    std::string cls, type, check, message;
};

// A reader of the JSON the check prints, strict enough that output which is
// not JSON fails: objects, arrays, strings with escapes, integers.
class Json {
public:
    explicit Json(const std::string& t) : t_(t) {}

    // The findings of the whole text; false when it is not one JSON object
    // of "count" and "findings", or the count disagrees.
    bool findings(std::vector<Found>& out) {
        long count = -1;
        bool ok = object([&](const std::string& key) {
            if (key == "count") return integer(count);
            if (key == "findings") return array([&] {
                Found f;
                std::map<std::string, std::string> fields;
                if (!object([&](const std::string& k) { return string(fields[k]); })) return false;
                if (fields.size() != 4) return false;
                out.push_back({fields["class"], fields["type"], fields["check"], fields["message"]});
                return true;
            });
            return false;
        });
        space();
        return ok && at_ == t_.size() && count == static_cast<long>(out.size());
    }

private:
    void space() {
        while (at_ < t_.size() && (t_[at_] == ' ' || t_[at_] == '\n' || t_[at_] == '\r' || t_[at_] == '\t')) ++at_;
    }
    bool eat(char c) {
        space();
        if (at_ >= t_.size() || t_[at_] != c) return false;
        ++at_;
        return true;
    }
    template <class Member>
    bool object(Member member) {
        if (!eat('{')) return false;
        if (eat('}')) return true;
        do {
            std::string key;
            if (!string(key) || !eat(':') || !member(key)) return false;
        } while (eat(','));
        return eat('}');
    }
    template <class Element>
    bool array(Element element) {
        if (!eat('[')) return false;
        if (eat(']')) return true;
        do {
            if (!element()) return false;
        } while (eat(','));
        return eat(']');
    }
    bool integer(long& v) {
        space();
        size_t end = at_;
        while (end < t_.size() && t_[end] >= '0' && t_[end] <= '9') ++end;
        if (end == at_) return false;
        v = std::stol(t_.substr(at_, end - at_));
        at_ = end;
        return true;
    }
    bool string(std::string& v) {
        if (!eat('"')) return false;
        v.clear();
        while (at_ < t_.size() && t_[at_] != '"') {
            const auto c = static_cast<unsigned char>(t_[at_++]);
            if (c < 0x20) return false;
            if (c != '\\') {
                v += static_cast<char>(c);
                continue;
            }
            if (at_ >= t_.size()) return false;
            const char e = t_[at_++];
            if (e == 'u') {
                if (at_ + 4 > t_.size()) return false;
                v += static_cast<char>(std::stoi(t_.substr(at_, 4), nullptr, 16));
                at_ += 4;
            } else if (std::string("\"\\/").find(e) != std::string::npos) {
                v += e;
            } else if (e == 'n' || e == 'r' || e == 't') {
                v += e == 'n' ? '\n' : e == 'r' ? '\r' : '\t';
            } else {
                return false;
            }
        }
        return eat('"');
    }

    const std::string& t_;
    size_t at_ = 0;
};

std::string head_of(const std::string& drawOrder) {
    return "[_id]\r\nProductCode=1\r\nFID=4711\r\nCodePage=1252\r\n[end]\r\n[_drawOrder]\r\n" + drawOrder + "[end]\r\n";
}

std::string polygon(const std::string& type, const std::string& label = "String1=0x04,Area\r\n") {
    return "[_polygon]\r\nType=" + type + "\r\n" + label + "Xpm=\"0 0 1 0\"\r\n\"a c #40A040\"\r\n[end]\r\n";
}

// Symbols of two characters, letters and digits.
std::string symbol(int i) {
    static const std::string a = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    return {a[static_cast<size_t>(i) / a.size()], a[static_cast<size_t>(i) % a.size()]};
}

// Every colour is used by a pixel, so that only the fault planted shows.
std::string point(const std::string& type, int w, int h, int opaque, bool none) {
    const int n = opaque + (none ? 1 : 0);
    std::string t = "[_point]\r\nType=" + type + "\r\nString1=0x04,P\r\nDayXpm=\"" + std::to_string(w) + " " +
                    std::to_string(h) + " " + std::to_string(n) + " 2\" Colormode=" + (none ? "16" : "0") + "\r\n";
    for (int i = 0; i < opaque; ++i) {
        char c[8];
        std::snprintf(c, sizeof c, "%06X", (i * 40503 + 1) & 0xFFFFFF);
        t += "\"" + symbol(i) + " c #" + c + "\"\r\n";
    }
    if (none) t += "\"" + symbol(opaque) + " c none\"\r\n";
    for (int y = 0, k = 0; y < h; ++y) {
        t += "\"";
        for (int x = 0; x < w; ++x, ++k) t += symbol(k % n);
        t += "\"\r\n";
    }
    return t + "[end]\r\n";
}

// A bitmap line that is a plain line with a border: a border row, three line
// rows, the border again.
std::string bordered_line(const std::string& type) {
    std::string line = "[_line]\r\nType=" + type + "\r\nString1=0x04,L\r\nXpm=\"32 5 2 1\"\r\n\"a c #000000\"\r\n\"b c #FF0000\"\r\n";
    for (const char* r : {"a", "b", "b", "b", "a"}) line += "\"" + std::string(32, r[0]) + "\"\r\n";
    return line + "[end]\r\n";
}

// One fault of each kind the checks know, each on its own type.
std::string planted() {
    return "\xEF\xBB\xBF" + head_of("Type=0x01,1\r\nType=0x05,2\r\nType=0x05,4\r\nType=0x0c,1\r\nType=0x0d,1\r\n") +
           polygon("0x01") + polygon("0x05") + polygon("0x17") +
           "[_polygon]\r\nType=0x0d\r\nString1=0x04,Same\r\nXpm=\"0 0 2 0\"\r\n\"a c #102030\"\r\n\"b c #102030\"\r\n[end]\r\n" +
           bordered_line("0x01") +
           "[_line]\r\nType=0x30\r\nString1=0x04,Hidden\r\nLineWidth=3\r\nBorderWidth=1\r\nXpm=\"0 0 2 0\"\r\n"
           "\"a c #000000\"\r\n\"b c #FFFFFF\"\r\n[end]\r\n" +
           point("0x10201", 4, 4, 2, false) +
           polygon("0x0c", "String1=0x04,Green\r\nString2=0x15,Ziele\xC5\x84\r\n") +
           point("0x2a00", 16, 16, 256, false) + point("0x2b00", 16, 16, 255, true) +
           point("0x2c00", 65, 8, 2, true) +
           "[_point]\r\nType=0x2d00\r\nString1=0x04,T\r\nDayXpm=\"2 1 0 0\"\r\n\"#FF0000 #00FF00\"\r\n[end]\r\n";
}

// check name -> (class, type) of its one planted fault
const std::map<std::string, std::pair<std::string, std::string>> k_planted = {
    {"label-codepage", {"polygon", "0x00c00"}},   {"no-draworder", {"polygon", "0x01700"}},
    {"draworder-duplicate", {"polygon", "0x00500"}}, {"colours-over-255", {"point", "0x02a00"}},
    {"old-units-colours", {"point", "0x02b00"}},  {"over-max-size", {"point", "0x02c00"}},
    {"true-colour", {"point", "0x02d00"}},
    {"unused-colours", {"polygon", "0x00d00"}},   {"non-bitmap-line", {"line", "0x00100"}},
    {"basecamp-invisible", {"line", "0x03000"}}, {"basecamp-no-label", {"point", "0x10201"}},
};

class CheckCommand : public CliTest {
protected:
    std::vector<Found> findings_of(const std::string& file, const std::string& options = "") {
        const CliRun r = cli("check --json " + options + " " + file);
        std::vector<Found> f;
        EXPECT_TRUE(Json(r.out).findings(f)) << "not the JSON of findings:\n" << r.out;
        EXPECT_EQ(r.status, f.empty() ? 0 : 1);
        return f;
    }
};

TEST_F(CheckCommand, EachPlantedFaultIsFoundOnceWithItsClassAndType) {
    write("planted.txt", planted());
    const std::vector<Found> f = findings_of(path("planted.txt"));
    for (const auto& [check, where] : k_planted) {
        int seen = 0;
        for (const Found& x : f) {
            if (x.check != check) continue;
            ++seen;
            EXPECT_EQ(x.cls, where.first) << check;
            EXPECT_EQ(x.type, where.second) << check;
            EXPECT_FALSE(x.message.empty()) << check;
        }
        EXPECT_EQ(seen, 1) << check;
    }
    // And nothing else: the rest of the file is clean.
    EXPECT_EQ(f.size(), k_planted.size());
}

// The same faults through a TYP: the encoder keeps the label, the missing
// level and the point limits. The repeated draw-order entry is dropped by
// the text load (the check names it from what the load said), and a picture
// without palette does not come back from a TYP as one.
TEST_F(CheckCommand, TheFaultsSurviveATypAndTheJsonIsTheSameEveryRun) {
    write("planted.txt", planted());
    ASSERT_EQ(cli("encode " + path("planted.txt") + " -o " + path("planted.typ")).status, 0);
    const CliRun a = cli("check --json " + path("planted.typ"));
    const CliRun b = cli("check --json " + path("planted.typ"));
    EXPECT_EQ(a.status, 1);
    EXPECT_EQ(a.out, b.out);
    std::vector<Found> f;
    ASSERT_TRUE(Json(a.out).findings(f)) << a.out;
    std::map<std::string, int> checks;
    for (const Found& x : f) ++checks[x.check];
    for (const auto& [check, where] : k_planted)
        if (check != "draworder-duplicate" && check != "true-colour") {
            EXPECT_EQ(checks[check], 1) << check;
        }
    EXPECT_EQ(checks["draworder-duplicate"], 0);

    // The plain form: one line a finding, in the JSON's order.
    const CliRun plain = cli("check " + path("planted.typ"));
    EXPECT_EQ(plain.status, 1);
    const std::vector<std::string> lines = lines_of(plain.out);
    ASSERT_EQ(lines.size(), f.size()) << plain.out;
    for (size_t k = 0; k < f.size(); ++k)
        EXPECT_EQ(lines[k], f[k].cls + " " + f[k].type + " " + f[k].check + ": " + f[k].message);
}

// Over every corpus file: the output is JSON whatever the labels hold, each
// finding names a known class and a type in the one form, and the exit
// status agrees with the list.
TEST_F(CheckCommand, EveryCorpusFileGivesJsonOfWellFormedFindings) {
    const std::string corpus = corpus_dir();
    if (corpus.empty()) GTEST_SKIP() << "../shared/corpus is missing";
    std::vector<std::string> files = files_with(corpus + "/typ", ".typ");
    for (const std::string& t : files_with(corpus + "/txt", ".txt")) files.push_back(t);
    ASSERT_FALSE(files.empty());
    const std::set<std::string> classes = {"polygon", "line", "point", "active-line", "extra-point", "file"};
    for (const std::string& file : files) {
        SCOPED_TRACE(file);
        for (const Found& f : findings_of(file)) {
            EXPECT_TRUE(classes.count(f.cls)) << f.cls;
            EXPECT_TRUE(f.cls == "file" ? f.type.empty()
                                        : f.type.size() == 7 && f.type.rfind("0x", 0) == 0 &&
                                              f.type.find_first_not_of("0123456789abcdef", 2) == std::string::npos)
                << f.type;
            EXPECT_FALSE(f.check.empty());
            EXPECT_TRUE(korvex::platform::is_valid_utf8(f.message)) << f.message;
        }
    }
}

TEST_F(CheckCommand, MaxSizeIsJudgedAtTheLimitAndOneAbove) {
    write("wide.txt", head_of("") + point("0x2c00", 65, 8, 2, true));
    EXPECT_EQ(findings_of(path("wide.txt"), "--max-size 65").size(), 0u);
    const std::vector<Found> f = findings_of(path("wide.txt"), "--max-size 64");
    ASSERT_EQ(f.size(), 1u);
    EXPECT_EQ(f[0].check, "over-max-size");
    EXPECT_NE(f[0].message.find("65 x 8"), std::string::npos) << f[0].message;
    EXPECT_EQ(cli("check --max-size 12 " + path("wide.txt")).status, 1);
    EXPECT_EQ(cli("check --max-size 11 " + path("wide.txt")).status, 2);
}

TEST_F(CheckCommand, ExitStatusTellsCleanFindingsAndUnreadableApart) {
    EXPECT_EQ(cli("check " + sample).status, 0) << cli("check " + sample).out;
    EXPECT_EQ(cli("check " + source_dir() + "/data/samples/sample.txt").status, 0);
    EXPECT_EQ(cli("check --json " + sample).out, "{\"count\": 0, \"findings\": []}\n");
    write("planted.txt", planted());
    EXPECT_EQ(cli("check " + path("planted.txt")).status, 1);

    write("empty.typ", "");
    write("foreign.typ", "this is no TYP file at all");
    for (const std::string& bad : {path("nope.typ"), path("empty.typ"), path("foreign.typ"), dir.string()}) {
        const CliRun r = cli("check --json " + bad);
        EXPECT_EQ(r.status, 2) << bad;
        EXPECT_EQ(r.out, "") << "nothing on standard output for " << bad;
    }
}

TEST_F(CheckCommand, OptionsOfOneCommandAreRefusedByTheOthers) {
    write("planted.txt", planted());
    const std::string in = path("planted.txt");
    for (const std::string& args :
         {"check " + in + " -o " + path("x.typ"), "decode " + in + " --json", "encode " + in + " --unused-colours",
          "check " + in + " --non-bitmap-lines", "repair " + in + " -o " + path("x.typ"),
          "repair " + in + " --unused-colours", "repair " + in + " --unused-colours -o " + path("x.png"),
          "repair " + in + " --unused-colours -o " + path("x.typ") + " --json",
          "decode " + in + " --max-size 64"})
        EXPECT_EQ(cli(args).status, 2) << args;
    const std::string help = cli("--help").out;
    EXPECT_NE(help.find("korvex-cli check "), std::string::npos);
    EXPECT_NE(help.find("korvex-cli repair "), std::string::npos);
    EXPECT_EQ(read_bytes(path("x.typ")), "") << "a refused repair writes nothing";
}

// A point with a colour no pixel uses, and a line that can do without its
// bitmap.
std::string repairable() {
    return head_of("") + bordered_line("0x01") +
           "[_point]\r\nType=0x2e00\r\nString1=0x04,U\r\nDayXpm=\"4 2 3 1\" Colormode=0\r\n"
           "\"a c #FF0000\"\r\n\"b c #00FF00\"\r\n\"c c #0000FF\"\r\n\"abab\"\r\n\"baba\"\r\n[end]\r\n";
}

TEST_F(CheckCommand, RepairWritesATypOrTextThatLoadsWithTheRepairsMade) {
    write("in.txt", repairable());
    std::vector<Found> before = findings_of(path("in.txt"));
    ASSERT_EQ(before.size(), 2u);
    EXPECT_EQ(before[0].check, "non-bitmap-line");
    EXPECT_EQ(before[1].check, "unused-colours");
    for (const std::string out : {"out.typ", "OUT.TXT"}) {
        const CliRun r = cli("repair " + path("in.txt") + " -o " + path(out) + " --unused-colours --non-bitmap-lines", true);
        ASSERT_EQ(r.status, 0) << r.out;
        EXPECT_NE(r.out.find("repaired: unused colours in 1 elements"), std::string::npos) << r.out;
        EXPECT_NE(r.out.find("repaired: 1 lines converted to non-bitmap"), std::string::npos) << r.out;
        const CliRun text = cli("decode " + path(out));
        ASSERT_EQ(text.status, 0) << out;
        EXPECT_NE(text.out.find("DayXpm=\"4 2 2 1\""), std::string::npos) << text.out;
        EXPECT_NE(text.out.find("Xpm=\"0 0 2 0\""), std::string::npos) << text.out;
        EXPECT_EQ(cli("check " + path(out)).status, 0) << cli("check " + path(out)).out;
    }
    // Only what was asked: the line keeps its bitmap without --non-bitmap-lines.
    ASSERT_EQ(cli("repair " + path("in.txt") + " -o " + path("colours.txt") + " --unused-colours").status, 0);
    EXPECT_NE(read_bytes(path("colours.txt")).find("Xpm=\"32 5 2 1\""), std::string::npos);
}

TEST_F(CheckCommand, RepairThatCannotWriteFailsAndLeavesNoFile) {
    write("in.txt", repairable());
    const std::string out = path("missing-folder/out.typ");
    EXPECT_EQ(cli("repair " + path("in.txt") + " -o " + out + " --unused-colours").status, 1);
    EXPECT_FALSE(fs::exists(out));
    EXPECT_EQ(cli("repair " + path("nope.txt") + " -o " + path("x.typ") + " --unused-colours").status, 2);
    EXPECT_FALSE(fs::exists(path("x.typ")));
}

}  // namespace check_command_test
