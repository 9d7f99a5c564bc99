// korvex-cli as build scripts use it: output format, exit status, atomic
// output and reproducible bytes.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "cli/cli_fixture.h"
#include "support/harness.h"

using namespace korvex::testing;
using namespace korvex::testing::cli_fixture;
namespace fs = std::filesystem;

namespace {

TEST_F(CliTest, WrongUsageExitsWithTwo) {
    EXPECT_EQ(cli("").status, 2);
    EXPECT_EQ(cli("frobnicate " + sample).status, 2);
    EXPECT_EQ(cli("info").status, 2);
    EXPECT_EQ(cli("decode " + sample + " --load-options 11x111").status, 2);
    EXPECT_EQ(cli("decode " + sample + " --answer maybe").status, 2);
    EXPECT_EQ(cli("info " + sample + " --utf8").status, 2);
}

TEST_F(CliTest, MissingInputExitsWithOneAndSaysWhy) {
    CliRun r = cli("info " + path("nope.typ"), true);
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.out.find("nope.typ doesn't exist"), std::string::npos);
}

TEST_F(CliTest, InfoPrintsTheKeysInOrder) {
    CliRun r = cli("info " + sample);
    ASSERT_EQ(r.status, 0);
    const char* keys[] = {"format: typ\n", "header: ", "created: ", "codepage: ", "fid: ", "pid: ",
                          "polygons: ", "lines: ", "points: ", "extra points: ", "active lines: ", "draworder: "};
    size_t at = 0;
    for (const char* k : keys) {
        size_t found = r.out.find(k, at);
        ASSERT_NE(found, std::string::npos) << k << " missing or out of order in\n" << r.out;
        at = found + 1;
    }
}

TEST_F(CliTest, SourceDateEpochMakesRunsIdentical) {
    const std::string env = "SOURCE_DATE_EPOCH=1700000000";
    ASSERT_EQ(cli("encode " + sample + " -o " + path("a.typ"), false, env).status, 0);
    ASSERT_EQ(cli("encode " + path("a.typ") + " -o " + path("b.typ"), false, env).status, 0);
    EXPECT_EQ(read_bytes(path("a.typ")), read_bytes(path("b.typ")));
    ASSERT_EQ(cli("decode " + sample + " -o " + path("a.txt"), false, env).status, 0);
    ASSERT_EQ(cli("decode " + sample + " -o " + path("b.txt"), false, env).status, 0);
    EXPECT_EQ(read_bytes(path("a.txt")), read_bytes(path("b.txt")));
    EXPECT_NE(read_bytes(path("a.txt")).find(";created : "), std::string::npos);
}

TEST_F(CliTest, DecodeToStandardOutputEqualsDecodeToFile) {
    const std::string env = "SOURCE_DATE_EPOCH=1700000000";
    CliRun r = cli("decode " + sample, false, env);
    ASSERT_EQ(r.status, 0);
    ASSERT_EQ(cli("decode " + sample + " -o " + path("c.txt"), false, env).status, 0);
    EXPECT_EQ(r.out, read_bytes(path("c.txt")));
    CliRun u = cli("decode --utf8 " + sample, false, env);
    EXPECT_EQ(u.out.substr(0, 3), "\xEF\xBB\xBF");
}

TEST_F(CliTest, RefusedSaveLeavesTheOldOutputAndNoTemporaryFile) {
    const std::string out = path("keep.typ");
    {
        std::ofstream f(out, std::ios::binary);
        f << "old contents";
    }
    // A copy of the sample with code page 0: the save is refused.
    std::string bytes = read_bytes(sample);
    ASSERT_GT(bytes.size(), 23u);
    bytes[21] = 0;
    bytes[22] = 0;
    write("cp0.typ", bytes);
    CliRun r = cli("encode " + path("cp0.typ") + " -o " + out, true);
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.out.find("message: Please enter valid codepage."), std::string::npos) << r.out;
    EXPECT_EQ(read_bytes(out), "old contents");
    size_t files = 0;
    for (auto& e : fs::directory_iterator(dir)) {
        (void)e;
        ++files;
    }
    EXPECT_EQ(files, 2u) << "a temporary file was left behind";
}

// --codepage is the window's code-page box: a file whose header holds code
// page 0 is re-encoded from the command line; only the box's values pass.
TEST_F(CliTest, CodepageOptionSavesWithTheCodePageOfTheBox) {
    std::string bytes = read_bytes(sample);
    bytes[21] = 0;
    bytes[22] = 0;
    write("cp0.typ", bytes);
    ASSERT_EQ(cli("encode " + path("cp0.typ") + " --codepage 1252 -o " + path("cp1252.typ")).status, 0);
    EXPECT_NE(cli("info " + path("cp1252.typ")).out.find("codepage: 1252\n"), std::string::npos);
    CliRun d = cli("decode " + path("cp0.typ") + " --codepage 65001");
    EXPECT_EQ(d.status, 0);
    EXPECT_NE(d.out.find("CodePage=65001\r\n"), std::string::npos);
    for (const std::string bad : {"0", "125", "1234", "01252", "x", ""})
        EXPECT_EQ(cli("encode " + sample + " --codepage '" + bad + "'").status, 2) << bad;
    EXPECT_EQ(cli("encode " + sample + " --codepage").status, 2);
    EXPECT_EQ(cli("info " + sample + " --codepage 1252").status, 2);
    EXPECT_NE(cli("--help").out.find("--codepage N"), std::string::npos);
}

// A text is a view of the file: decode writes identifiers of 0 as they are
// and says so. A TYP is for a device: encode asks what the window's save
// asks, and --answer answers.
TEST_F(CliTest, ZeroIdentifiersDecodeAsTheyAreAndEncodeAsksAsTheWindowDoes) {
    std::string bytes = read_bytes(sample);
    bytes[49] = 0;
    bytes[50] = 0;
    write("pid0.typ", bytes);
    CliRun r = cli("decode " + path("pid0.typ"), true);
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("ProductCode=0\r\n"), std::string::npos);
    EXPECT_NE(r.out.find("report: PID is 0 (written as it is; a TYP for a device needs --fid and --pid)\n"),
              std::string::npos);
    EXPECT_EQ(r.out.find("Please enter"), std::string::npos);
    CliRun given = cli("decode " + path("pid0.typ") + " --pid 7", true);
    EXPECT_EQ(given.status, 0);
    EXPECT_NE(given.out.find("ProductCode=7"), std::string::npos);
    EXPECT_EQ(given.out.find("report: PID"), std::string::npos);

    const std::string question = "question: Check: PID=0 \n\n Continue? -> ";
    CliRun no = cli("encode " + path("pid0.typ") + " -o " + path("no.typ") + " --answer no", true);
    EXPECT_EQ(no.status, 1);
    EXPECT_NE(no.out.find(question + "no"), std::string::npos) << no.out;
    EXPECT_FALSE(fs::exists(path("no.typ")));
    CliRun yes = cli("encode " + path("pid0.typ") + " -o " + path("yes.typ"), true);
    EXPECT_EQ(yes.status, 0);
    EXPECT_NE(yes.out.find(question + "yes"), std::string::npos) << yes.out;
    EXPECT_EQ(cli("encode " + path("pid0.typ") + " -o " + path("seven.typ") + " --pid 7 --answer no").status, 0);
    EXPECT_NE(cli("info " + path("seven.typ")).out.find("pid: 7\n"), std::string::npos);

    // A draw order alone (no [_id]: FID and PID 0) decodes; encode needs a FID.
    write("order.txt", "[_drawOrder]\r\nType=0x01,1\r\n[end]\r\n");
    CliRun no_fid = cli("encode " + path("order.txt") + " -o " + path("order.typ"), true);
    EXPECT_EQ(no_fid.status, 1);
    EXPECT_NE(no_fid.out.find("message: Please enter FID\n"), std::string::npos) << no_fid.out;
    EXPECT_FALSE(fs::exists(path("order.typ")));
    ASSERT_EQ(cli("encode " + path("order.txt") + " -o " + path("order.typ") + " --fid 5 --pid 0").status, 0);
    std::string typ = read_bytes(path("order.typ"));
    typ[47] = typ[48] = typ[49] = typ[50] = 0;
    write("order.typ", typ);
    CliRun order = cli("decode " + path("order.typ"), true);
    EXPECT_EQ(order.status, 0);
    EXPECT_NE(order.out.find("report: FID and PID are 0"), std::string::npos) << order.out;
    EXPECT_NE(order.out.find("[_drawOrder]\r\nType=0x01,1\r\n[end]"), std::string::npos);
    EXPECT_EQ(cli("decode " + sample + " --fid 70000").status, 2);
}

// A file that is empty or none of ours gets one line naming it and why, and
// no output; a TYP whose body is damaged still loads with its report.
TEST_F(CliTest, EmptyAndForeignFilesAreRefusedWithOneClearLine) {
    write("empty.typ", "");
    std::string noise(4000, '\0');
    for (size_t k = 0; k < noise.size(); ++k) noise[k] = static_cast<char>((k * 7919 + 13) % 251);
    write("noise.typ", noise);
    for (const std::string name : {"empty.typ", "noise.typ"}) {
        for (const std::string command : {"info", "decode", "encode"}) {
            SCOPED_TRACE(command + " " + name);
            const std::string out = command == "info" ? "" : " -o " + path(name + ".out");
            CliRun r = cli(command + " " + path(name) + out, true);
            EXPECT_EQ(r.status, 1);
            const std::string why = name == "empty.typ"
                                        ? "the file is empty"
                                        : "not a TYP file (no \"GARMIN TYP\" signature at offset 2), a TYP text or a MapTK project";
            EXPECT_EQ(r.out, "korvex-cli: " + path(name) + ": " + why + "\n");
            EXPECT_FALSE(fs::exists(path(name + ".out")));
        }
    }
    std::string damaged = read_bytes(sample);
    damaged.resize(damaged.size() * 2 / 3);
    write("damaged.typ", damaged);
    CliRun d = cli("info " + path("damaged.typ"));
    EXPECT_EQ(d.status, 0);
    EXPECT_NE(d.out.find("format: typ\n"), std::string::npos);
    EXPECT_NE(d.out.find("report: "), std::string::npos);
}

// Real files hold labels with two strings of one language; a save keeps the
// first and says so once for the file, however many labels drop one.
TEST_F(CliTest, SecondStringsOfALanguageAreDroppedAndSaidOnce) {
    std::string text = "[_id]\r\nProductCode=1\r\nFID=7\r\nCodePage=1252\r\n[end]\r\n";
    for (const char* type : {"0x01", "0x02"})
        text += std::string("[_line]\r\nType=") + type +
                "\r\nString1=0x04,First\r\nString2=0x04,Second\r\nLineWidth=2\r\nXpm=\"0 0 1 0\"\r\n"
                "\"1 c #FF0000\"\r\n[end]\r\n";
    write("twice.txt", text);
    CliRun r = cli("encode " + path("twice.txt") + " -o " + path("twice.typ"), true);
    ASSERT_EQ(r.status, 0) << r.out;
    const std::string said = "report: A label had a second string of one language: the first was kept, the second dropped\n";
    const size_t at = r.out.find(said);
    ASSERT_NE(at, std::string::npos) << r.out;
    EXPECT_EQ(r.out.find(said, at + 1), std::string::npos) << r.out;
    CliRun d = cli("decode " + path("twice.typ"));
    EXPECT_NE(d.out.find("String1=0x04,First\r\n"), std::string::npos);
    EXPECT_EQ(d.out.find("Second"), std::string::npos);
}

TEST_F(CliTest, VersionAndHelpExitWithZero) {
    CliRun v = cli("--version");
    EXPECT_EQ(v.status, 0);
    EXPECT_EQ(v.out, "korvex-cli " KORVEX_VERSION "\n");
    CliRun h = cli("--help");
    EXPECT_EQ(h.status, 0);
    EXPECT_EQ(h.out.rfind("usage: korvex-cli info", 0), 0u);
}

TEST_F(CliTest, AnswerNoRefusesLoadOptionsQuestion) {
    CliRun r = cli("info " + sample + " --load-options 110111 --answer no", true);
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.out.find("question: Load options apply (see Settings). Continue? -> no"), std::string::npos);
    CliRun y = cli("info " + sample + " --load-options 110111", true);
    EXPECT_EQ(y.status, 0);
    EXPECT_NE(y.out.find("points: 0"), std::string::npos);
}

TEST_F(CliTest, TextInputIsLoadedForInfoDecodeAndEncode) {
    const std::string env = "SOURCE_DATE_EPOCH=1700000000";
    ASSERT_EQ(cli("decode " + sample + " -o " + path("s.txt"), false, env).status, 0);
    CliRun typ = cli("info " + sample);
    CliRun txt = cli("info " + path("s.txt"));
    ASSERT_EQ(txt.status, 0);
    EXPECT_EQ(txt.out.substr(0, 13), "format: text\n");
    // "created:" comes from the text's ";created :" head line.
    const std::string written = read_bytes(path("s.txt"));
    const size_t c = written.find(";created : ");
    ASSERT_NE(c, std::string::npos);
    const std::string stamp = written.substr(c + 11, written.find('\r', c) - c - 11);
    EXPECT_NE(txt.out.find("created: " + stamp + "\n"), std::string::npos) << txt.out;
    // Everything but the format line and the date agrees with the TYP's info.
    EXPECT_EQ(txt.out.substr(txt.out.find("codepage: ")), typ.out.substr(typ.out.find("codepage: ")));
    // TYP -> text -> TYP -> text gives the first text again.
    ASSERT_EQ(cli("encode " + path("s.txt") + " -o " + path("s2.typ"), false, env).status, 0);
    ASSERT_EQ(cli("decode " + path("s2.typ") + " -o " + path("s2.txt"), false, env).status, 0);
    EXPECT_EQ(first_difference(without_comments(read_bytes(path("s.txt"))), without_comments(read_bytes(path("s2.txt")))), "");
}

TEST_F(CliTest, TextIsToldByContentThenByExtension) {
    write("plain.typ", "\xEF\xBB\xBF\r\n  [_id]\r\nFID=3\r\n[end]\r\n");
    CliRun r = cli("info " + path("plain.typ"));
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out.substr(0, 13), "format: text\n");
    EXPECT_NE(r.out.find("fid: 3\n"), std::string::npos);
    write("comment.typ", "; nothing yet\n");
    EXPECT_EQ(cli("info " + path("comment.typ")).out.substr(0, 13), "format: text\n");
}

TEST_F(CliTest, Utf8QuestionOfATextIsAnsweredByTheAnswerOption) {
    write("u.txt", "\xEF\xBB\xBF[_id]\r\nCodePage=1252\r\n[end]\r\n");
    const std::string q = "question: Detected UTF8. Continue loading as UTF8? -> ";
    CliRun no = cli("info " + path("u.txt") + " --answer no", true);
    EXPECT_NE(no.out.find(q + "no"), std::string::npos) << no.out;
    CliRun yes = cli("info " + path("u.txt"), true);
    EXPECT_NE(yes.out.find(q + "yes"), std::string::npos) << yes.out;
}

TEST_F(CliTest, MaptkProjectIsToldByItsSectionsThenByExtension) {
    const std::string prj = source_dir() + "/tests/data/maptk/sample.prj";
    CliRun r = cli("info " + prj);
    ASSERT_EQ(r.status, 0);
    EXPECT_EQ(r.out.substr(0, 12), "format: prj\n");
    EXPECT_NE(r.out.find("fid: 3511\npid: 1\npolygons: 2\nlines: 2\npoints: 2\n"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("draworder: 2\n"), std::string::npos);
    // Its sections make a project whatever the name; "[_" markers make a text.
    write("project.txt", read_bytes(prj));
    EXPECT_EQ(cli("info " + path("project.txt")).out.substr(0, 12), "format: prj\n");
    write("text.prj", "[_id]\r\nFID=3\r\n[end]\r\n[_polygon]\r\nType=0x01\r\nXpm=\"0 0 1 0\"\r\n\"0 c #FF0000\"\r\n[end]\r\n");
    EXPECT_EQ(cli("info " + path("text.prj")).out.substr(0, 13), "format: text\n");
    // Nor sections nor markers: the extension.
    write("bare.prj", "familyid=12\n");
    EXPECT_EQ(cli("info " + path("bare.prj")).out.substr(0, 12), "format: prj\n");
    // A project decodes to a text and encodes to a TYP of the same tables.
    ASSERT_EQ(cli("decode " + prj + " -o " + path("p.txt")).status, 0);
    EXPECT_NE(read_bytes(path("p.txt")).find("LineWidth=3\r\n"), std::string::npos);
    ASSERT_EQ(cli("encode " + prj + " -o " + path("p.typ")).status, 0);
    CliRun t = cli("info " + path("p.typ"));
    EXPECT_EQ(t.out.substr(t.out.find("fid: ")), r.out.substr(r.out.find("fid: ")));
}

}  // namespace

// The TYP inside a map container (mkgmap's gmapsupp.img of the test data).
TEST_F(CliTest, ImgListsExtractsAndReplacesInPlaceOrIntoANewFile) {
    const std::string map = path("gmapsupp.img");
    fs::copy_file(source_dir() + "/tests/data/img/gmapsupp.img", map);
    const std::string original = read_bytes(map);
    CliRun l = cli("img list " + map);
    EXPECT_EQ(l.status, 0);
    EXPECT_NE(l.out.find("block size 512, 6 subfiles\n"), std::string::npos) << l.out;
    EXPECT_NE(l.out.find("\n0XSAMPLE.TYP  5837 bytes  FID 4242  PID 1\n"), std::string::npos) << l.out;
    EXPECT_NE(l.out.find("\n63240001.RGN  278 bytes\n"), std::string::npos) << l.out;

    ASSERT_EQ(cli("img extract " + map + " -o " + path("a.typ")).status, 0);
    ASSERT_EQ(cli("img extract " + map + " 0xsample.typ -o " + path("b.typ")).status, 0);
    EXPECT_EQ(read_bytes(path("a.typ")).size(), 5837u);
    EXPECT_EQ(read_bytes(path("a.typ")), read_bytes(path("b.typ")));

    // A text is encoded as encode does; -o leaves the map as it was.
    const std::string env = "SOURCE_DATE_EPOCH=1700000000";
    const std::string text = source_dir() + "/data/samples/sample.txt";
    ASSERT_EQ(cli("encode " + text + " --fid 4242 -o " + path("enc.typ"), false, env).status, 0);
    CliRun r = cli("img replace " + map + " " + text + " --fid 4242 -o " + path("new.img"), true, env);
    ASSERT_EQ(r.status, 0) << r.out;
    EXPECT_EQ(read_bytes(map), original);
    ASSERT_EQ(cli("img extract " + path("new.img") + " -o " + path("c.typ")).status, 0);
    EXPECT_EQ(read_bytes(path("c.typ")), read_bytes(path("enc.typ")));

    // In place, with a TYP of another family: said, and done.
    ASSERT_EQ(cli("encode " + sample + " --fid 77 -o " + path("f77.typ"), false, env).status, 0);
    r = cli("img replace " + map + " " + path("f77.typ"), true);
    EXPECT_EQ(r.status, 0) << r.out;
    EXPECT_NE(r.out.find("has family id 77, the map's TYP 4242"), std::string::npos) << r.out;
    ASSERT_EQ(cli("img extract " + map + " -o " + path("d.typ")).status, 0);
    EXPECT_EQ(read_bytes(path("d.typ")), read_bytes(path("f77.typ")));
    // Back to the TYP it held: the file mkgmap wrote.
    ASSERT_EQ(cli("img replace " + map + " " + path("a.typ")).status, 0);
    EXPECT_EQ(read_bytes(map), original);
}

TEST_F(CliTest, ImgRefusesWhatIsNoContainerOrHoldsNoTypWithTwo) {
    const std::string no_typ = source_dir() + "/tests/data/img/no-typ.img";
    write("t.typ", read_bytes(sample));
    const std::string before = read_bytes(path("t.typ"));
    struct Case {
        std::string args, says;
    };
    const std::vector<Case> cases = {
        {"img list " + sample, "is not a Garmin map file"},
        {"img extract " + no_typ + " -o " + path("x.typ"), "holds no TYP file."},
        {"img replace " + path("t.typ") + " " + sample, "is not a Garmin map file"},
        {"img replace " + no_typ + " " + sample + " -o " + path("x.img"), "holds no TYP file."},
        {"img list " + no_typ, "holds no TYP file."},
        {"img frob " + no_typ, "unknown img command frob"},
    };
    for (const Case& c : cases) {
        CliRun r = cli(c.args, true);
        EXPECT_EQ(r.status, 2) << c.args;
        EXPECT_NE(r.out.find(c.says), std::string::npos) << c.args << "\n" << r.out;
    }
    EXPECT_EQ(read_bytes(path("t.typ")), before);
    EXPECT_FALSE(fs::exists(path("x.typ")));
    EXPECT_FALSE(fs::exists(path("x.img")));
    EXPECT_NE(cli("--help").out.find("korvex-cli img replace MAP.img NEW.typ|NEW.txt"), std::string::npos);
}
