// The style rules of the Mkgmap Code dialog are fed to mkgmap, run as a
// black box: a tiny map is compiled from a hand-written OSM file with a style
// made of nothing but the exported rules, and our TYP of the elements. mkgmap
// must report no error, and every exported type must stand in the map.
#include <gtest/gtest.h>

#include "integration/style_export.h"
#include "interop/img_types.h"
#include "interop/mkgmap_support.h"
#include "text/load_driver.h"

using namespace korvex;
using namespace korvex::testing;
using namespace korvex::testing::interop;

namespace {

const char* const k_xpm = "Xpm=\"0 0 1 0\"\r\n\"1 c #102030\"\r\n";
const char* const k_point_xpm = "DayXpm=\"2 2 1 1\"\r\n\"! c #FF0000\"\r\n\"!!\"\r\n\"!!\"\r\n";

std::string element(const std::string& cls, const std::string& type, const std::string& label, const char* xpm) {
    return "[_" + cls + "]\r\nType=" + type + "\r\nString1=0x04," + label + "\r\n" + xpm + "[end]\r\n";
}

// Polygons, lines and points of plain, subtyped and extended types; labels
// with blanks and an apostrophe, as a user's labels are.
std::string typ_text() {
    return std::string("[_id]\r\nFID=7311\r\nProductCode=1\r\nCodePage=1252\r\n[end]\r\n") +
           "[_drawOrder]\r\nType=0x4e,1\r\nType=0x10f00,2\r\n[end]\r\n" +
           element("polygon", "0x4e", "Orchard", k_xpm) + element("polygon", "0x10f00", "Golf course", k_xpm) +
           element("line", "0x16", "Foot path", k_xpm) + element("line", "0x10101", "Ski run", k_xpm) +
           element("point", "0x2a00", "Diner", k_point_xpm) + element("point", "0x2a01", "Joe's Grill", k_point_xpm) +
           element("point", "0x11500", "Kiosk", k_point_xpm);
}

// A closed way tagged for each polygon rule, a way for each line rule, a
// node that every chained point rule matches.
const char* const k_osm = R"(<?xml version='1.0' encoding='UTF-8'?>
<osm version='0.6' generator='korvex test'>
  <bounds minlat='51.0' minlon='7.0' maxlat='51.02' maxlon='7.02'/>
  <node id='1' lat='51.001' lon='7.001'/><node id='2' lat='51.001' lon='7.004'/>
  <node id='3' lat='51.004' lon='7.004'/><node id='4' lat='51.004' lon='7.001'/>
  <node id='5' lat='51.006' lon='7.006'/><node id='6' lat='51.006' lon='7.009'/>
  <node id='7' lat='51.009' lon='7.009'/><node id='8' lat='51.009' lon='7.006'/>
  <node id='9' lat='51.011' lon='7.001'/><node id='10' lat='51.015' lon='7.012'/>
  <node id='11' lat='51.016' lon='7.001'/><node id='12' lat='51.018' lon='7.012'/>
  <node id='13' lat='51.012' lon='7.015'><tag k='amenity' v='restaurant'/></node>
  <way id='100'><nd ref='1'/><nd ref='2'/><nd ref='3'/><nd ref='4'/><nd ref='1'/><tag k='landuse' v='Orchard'/></way>
  <way id='101'><nd ref='5'/><nd ref='6'/><nd ref='7'/><nd ref='8'/><nd ref='5'/><tag k='leisure' v='Golf_course'/></way>
  <way id='102'><nd ref='9'/><nd ref='10'/><tag k='highway' v='Foot_path'/></way>
  <way id='103'><nd ref='11'/><nd ref='12'/><tag k='piste:type' v='downhill'/></way>
</osm>
)";

struct MapRun {
    int status = -1;
    std::string log;
    std::string img;
};

MapRun compile_map(const std::map<std::string, std::string>& style, const std::string& typ, const std::string& fid) {
    MapRun r;
    const fs::path dir = fs::temp_directory_path() / ("korvex-mkgmap-style-" + std::to_string(::getpid()));
    fs::remove_all(dir);
    fs::create_directories(dir / "style");
    for (const auto& [name, rules] : style) platform::write_file_atomic((dir / "style" / name).string(), rules);
    platform::write_file_atomic((dir / "map.osm").string(), k_osm);
    platform::write_file_atomic((dir / "ours.typ").string(), typ);
    platform::write_file_atomic((dir / "log.properties").string(),
                                "handlers=java.util.logging.ConsoleHandler\n.level=WARNING\n"
                                "java.util.logging.ConsoleHandler.level=WARNING\n");
    const std::string cmd = "cd '" + dir.string() + "' && java -Dlog.config=log.properties -jar " + k_jar +
                            " --output-dir=out --style-file=style --family-id=" + fid +
                            " --mapname=63240001 map.osm ours.typ 2>&1";
    FILE* p = popen(cmd.c_str(), "r");
    char buf[4096];
    size_t n;
    while (p && (n = fread(buf, 1, sizeof buf, p)) > 0) r.log.append(buf, n);
    const int st = p ? pclose(p) : -1;
    r.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    r.img = read_bytes((dir / "out" / "63240001.img").string());
    fs::remove_all(dir);
    return r;
}

}  // namespace

TEST(MkgmapStyle, ExportedRulesCompileAndTheirTypesStandInTheMap) {
    if (!have_mkgmap()) GTEST_SKIP() << "mkgmap is not installed";
    platform::ScriptedPrompt ui;
    model::Store s;
    model::newproject(s);
    ASSERT_TRUE(text::load_txt(s, ui, "style.txt", typ_text(), false, false));
    ASSERT_EQ(s.pg_n, 2);
    ASSERT_EQ(s.ln_n, 2);
    ASSERT_EQ(s.pt_n, 3);

    // As the dialog makes them: a rule an element with its label as the
    // value, and the points as one chain.
    using integration::create_code;
    using integration::default_value;
    // mkgmap knows a style folder by its version file.
    std::map<std::string, std::string> style{{"version", "1\n"}};
    style["polygons"] = create_code(s, ui, model::k_polygons, {0}, "landuse", default_value(s, 0, 0), "24").text +
                        create_code(s, ui, model::k_polygons, {1}, "leisure", default_value(s, 0, 1), "24").text;
    style["lines"] = create_code(s, ui, model::k_lines, {0}, "highway", default_value(s, 1, 0), "24").text +
                     create_code(s, ui, model::k_lines, {1}, "piste:type", "downhill", "").text;
    style["points"] = create_code(s, ui, model::k_points, {0, 1, 2}, "amenity", "restaurant", "24").text;
    EXPECT_NE(style["points"].find(" continue "), std::string::npos);
    ASSERT_TRUE(ui.messages.empty()) << ui.messages.front();

    const std::string typ = encode(s, ui);
    ASSERT_FALSE(typ.empty());
    const MapRun run = compile_map(style, typ, s.fid);
    EXPECT_EQ(run.status, 0) << run.log;
    EXPECT_EQ(complaints(run.log), "") << style["polygons"] << style["lines"] << style["points"];
    ASSERT_FALSE(run.img.empty()) << run.log;

    const ImgTypes t = img_types(run.img);
    ASSERT_TRUE(t.readable) << t.problem;
    const std::set<int> polygons{0x4e00, 0x10f00}, lines{0x1600, 0x10101}, points{0x2a00, 0x2a01, 0x11500};
    for (int type : polygons) EXPECT_TRUE(t.polygons.count(type)) << std::hex << "polygon 0x" << type;
    for (int type : lines) EXPECT_TRUE(t.lines.count(type)) << std::hex << "line 0x" << type;
    for (int type : points) EXPECT_TRUE(t.points.count(type)) << std::hex << "point 0x" << type;
}
