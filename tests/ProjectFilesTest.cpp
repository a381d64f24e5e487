// Reading project and group files.
#include <functional>
#include <gtest/gtest.h>
#include <string>

#include "host/GroupFile.h"
#include "host/HostError.h"
#include "host/MakeGroup.h"
#include "host/ProjectFile.h"
#include "host/ProjectSource.h"
#include "host/ProjectXml.h"
#include "tests/Scratch.h"
#include "win/paths/CodePage.h"

namespace host {
namespace {

struct TRow {
  const char *Input, *Outcome;
};

// Returns the result of `read`, or "! " and the message of the error that it raises.
std::string Outcome(const std::function<std::string()>& read) {
  try {
    return read();
  } catch (const rtl::Exception& error) {
    return std::string("! ") + error.what();
  }
}

// Returns "NAME=PATH{FORM:CLASS}@LINE" without the empty parts.
std::string Unit(std::string text, const std::string& path, const std::string& form,
                 const std::string& formClass, int line) {
  if (!path.empty()) text += "=" + path;
  if (!form.empty()) text += "{" + form + ":" + formClass + "}";
  return text + "@" + std::to_string(line);
}

std::string Sources(std::string_view text, const qrl::TEncoding& encoding = qrl::TEncoding::Default()) {
  return Outcome([&] {
    std::string list;
    for (const TSourceUnit& unit : ReadProjectSource(text, encoding, "P"))
      list += (list.empty() ? "" : " ") +
              Unit(unit.UnitName, unit.Path, unit.FormName, unit.FormClass, unit.Line);
    return list;
  });
}

TEST(ProjectSourceTest, Clauses) {
  const TRow rows[] = {
      {"program P;\r\nuses\r\n  Forms,\r\n  A in 'x\\A.pas' {F},\r\n  B in '..\\B.pas' {DM: "
       "TDataModule};\r\n",
       "Forms@3 A=x\\A.pas{F:}@4 B=..\\B.pas{DM:TDataModule}@5"},
      {"program P;\rUSES\rA\rIN\r'it''s.pas';", "A=it's.pas@3"},
      {"library L; uses Vcl . Forms, My.Unit in 'My.Unit.pas';", "Vcl.Forms@1 My.Unit=My.Unit.pas@1"},
      {"uses A in 'A.pas'; begin end.", "A=A.pas@1"},
      {"program P; uses &Type in 'Type.pas', A;", "Type=Type.pas@1 A@1"},
      // Comments, also ones that resemble other constructs.
      {"{ unit } program {x} P (*;*); // uses Z;\nuses {a} A {b} in {c} 'A.pas' {d e} {F} , (*,*) B // "
       "{G}\n, C (* H *);",
       "A=A.pas{F:}@2 B@2 C{H:}@3"},
      // Directives: all branches count.
      {"{$IFDEF X} program A; {$ELSE} library B; {$ENDIF} uses U;", "U@1"},
      {"program P; uses {$IFDEF X} A {$ELSE} B {$ENDIF}, C;", "A@1 B@1 C@1"},
      {"program P; uses A, {$IFDEF X} B; {$ELSE} C in 'C.pas'; {$ENDIF} const D = 'E.pas';",
       "A@1 B@1 C=C.pas@1"},
      {"program P; uses A {$IFDEF X}, B; const Z = 1; {$ELSE} ; {$ENDIF} {$IFDEF Y} type T = (U, V); {$ELSE} "
       "{$ENDIF}",
       "A@1 B@1"},
      {"program P; {$IFDEF X} uses A; {$ELSE} uses B; {$ENDIF} const C = 'D';", "A@1 B@1"},
      {"program P; uses A in {$IFDEF X} 'x\\A.pas' {$ELSE} 'y\\A.pas' {$ENDIF} {F};",
       "A=x\\A.pas@1 A=y\\A.pas{F:}@1"},
      {"package K; requires rtl, vcl; contains A in 'A.pas' {F: TFrame}; end.", "A=A.pas{F:TFrame}@1"},
      {"program P; begin contains; end.", ""},
      {"program P; uses M\xFCll in 'M\xFCll.pas';", "M\xC3\xBCll=M\xC3\xBCll.pas@1"},
      // Errors.
      {"", "! P(1): this is no project: it begins with none of program, library, package, uses."},
      {"\nunit U; uses A;",
       "! P(2): this is no project: it begins with \"unit\", not with program, library, package or uses."},
      {"program P;\nuses A,\nB", "! P(3): the clause of units has no end."},
      {"program P;\nuses A in B;", "! P(2): a file name is expected after \"in\"."},
      {"program P;\nuses A in 'A.pas;\n", "! P(2): the file name is not closed on its line."},
      {"program P;\nuses 'A.pas';", "! P(2): a file name is not expected here."},
      {"program P;\nuses A(B);", "! P(2): \"(\" is not expected in the clause of units."},
  };
  for (const auto& row : rows) EXPECT_EQ(Sources(row.Input), row.Outcome) << row.Input;
  EXPECT_EQ(Sources("program P; uses Gr\xC3\xBCn;", qrl::TEncoding::UTF8()), "Gr\xC3\xBCn@1");
}

std::string References(const std::vector<TFileReference>& references) {
  std::string list;
  for (const TFileReference& file : references)
    list += (list.empty() ? "" : " ") + Unit(file.Name, "", file.FormName, file.FormClass, file.Line);
  return list;
}

std::string XmlProject(TXmlProject (*read)(std::string_view, std::string_view), std::string_view xml) {
  return Outcome([&] {
    const TXmlProject project = read(xml, "C:\\p\\App.dproj");
    return References({project.MainSource}) + " | " + References(project.Units);
  });
}

TEST(ProjectXmlTest, Projects) {
  const struct {
    TXmlProject (*Read)(std::string_view, std::string_view);
    const char *Xml, *Result;
  } rows[] = {
      {ReadDproj,
       "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Project xmlns=\"urn:x\">\n<PropertyGroup>\n"
       "<MainSource>App.dpr</MainSource></PropertyGroup>\n"
       "<ItemGroup><DelphiCompile Include=\"$(MainSource)\"/>\n"
       "<DCCReference Include='A.pas'><Form>F</Form><DesignClass>TFrame</DesignClass></DCCReference>\r\n"
       "<DCCReference Include='x\\B&amp;C.pas'/></ItemGroup></Project>",
       "App.dpr@4 | A.pas{F:TFrame}@6 x\\B&C.pas@7"},
      {ReadDproj,
       "<Project><ItemGroup Condition=\"'$(X)'==''\"><DelphiCompile Include='a.dpr'/></ItemGroup></Project>",
       "a.dpr@1 | "},
      {ReadDproj,
       "<Project><PropertyGroup><Src>lib</Src><dir>$(SRC)\\x</dir></"
       "PropertyGroup><Choose><When><ItemGroup><DCCReference Include='$(Dir)\\A%20B.pas; "
       ";$(MSBuildProjectName).pas;$(No)\\C.pas;100%.pas'/></ItemGroup></When></Choose></Project>",
       "@0 | lib\\x\\A B.pas@1 App.pas@1 $(No)\\C.pas@1 100%.pas@1"},
      {ReadBdsproj,
       "<BorlandProject><Delphi.Personality><Source>\n<Source Name='MainSource'> App.dpr "
       "</Source></Source><FileList><File FileName='A.pas' FormName='F' "
       "DesignClass=''/></FileList></Delphi.Personality></BorlandProject>",
       "App.dpr@2 | A.pas{F:}@2"},
      {ReadDproj, "<Project>\n<ItemGroup>\n</Project>",
       "! C:\\p\\App.dproj(3): this is not well-formed XML: Start-end tags mismatch."},
      {ReadDproj, "", "! C:\\p\\App.dproj(1): this is not well-formed XML: No document element found."},
      {ReadDproj, "<!-- x -->\n<BorlandProject/>",
       "! C:\\p\\App.dproj(2): the root element is <BorlandProject>, not <Project>."},
      {ReadDproj, "<Project>\n<DCCReference Include='A.pas' include='B'\nInclude='C.pas'/></Project>",
       "! C:\\p\\App.dproj(2): this is not well-formed XML: <DCCReference> has two attributes \"Include\"."},
      {ReadDproj, "<Project/>",
       "! C:\\p\\App.dproj: this is no project: it names neither a main source nor units."},
      {ReadBdsproj, "<BorlandProject>\n<File FileName=' '/></BorlandProject>",
       "! C:\\p\\App.dproj(2): the attribute FileName of <File> is empty."},
      {ReadBdsproj, "<BorlandProject/>", "! C:\\p\\App.dproj: this is no project: it names no main source."},
  };
  for (const auto& row : rows) EXPECT_EQ(XmlProject(row.Read, row.Xml), row.Result) << row.Xml;

  std::string doubling = "<Project><PropertyGroup><P0>0123456789</P0>";
  for (int i = 1; i < 64; ++i) {
    const std::string name = "P" + std::to_string(i), last = "$(P" + std::to_string(i - 1) + ")";
    doubling.append("<" + name + ">" + last + last + "</" + name + ">");
  }
  doubling += "</PropertyGroup><DCCReference Include='$(P63)x'/></Project>";
  EXPECT_LT(XmlProject(ReadDproj, doubling).size(), 100000u);
}

TEST(ProjectXmlTest, Groups) {
  EXPECT_EQ(References(ReadGroupproj(
                "<Project><PropertyGroup><D>x</D></PropertyGroup><ItemGroup>\n<Projects "
                "Include=\"$(D)\\A.dproj\"/>\n<Projects Include=\"..\\B.dproj\"/></ItemGroup><Target "
                "Name='A'><MSBuild Projects='A.dproj'/></Target></Project>",
                "G")),
            "x\\A.dproj@2 ..\\B.dproj@3");
  EXPECT_EQ(References(
                ReadBdsgroup("<BorlandProject><Projects>\n<Projects Name='Targets'>A.exe</Projects><Projects "
                             "Name='A.exe'>A.bdsproj</Projects></Projects></BorlandProject>",
                             "G")),
            "A.bdsproj@2");
  EXPECT_EQ(Outcome([] {
              return References(ReadBdsgroup(
                  "<BorlandProject>\n<Projects Name='A.exe'> </Projects></BorlandProject>", "G"));
            }),
            "! G(2): the entry \"A.exe\" of <Projects> names no project.");
}

TEST(MakeGroupTest, Groups) {
  const TRow rows[] = {
      {"VERSION = BWS.01\r\n!ifndef ROOT\r\nROOT = $(MAKEDIR)\\..\r\n!endif\r\n#---\r\n"
       "PROJECTS = B.exe A.exe\r\ndefault: $(PROJECTS)\r\n\r\nA.exe: A.dpr\r\n  $(DCC) x: y\r\n\r\nB.exe: "
       "..\\B.dpr\r\n",
       "..\\B.dpr@12 A.dpr@9"},
      {"PROJECTS = A.exe \\\n  B.exe # C.exe\nA.exe: \\\n\tA.dpr\nb.EXE: B.dpr\nZ.exe: Z.dpr",
       "A.dpr@3 B.dpr@5"},
      {"D = sub\nPROJECTS=$(D)\\A.exe\n$(d)\\A.exe: C:\\src\\$(D)\\A.dpr", "C:\\src\\sub\\A.dpr@3"},
      {"PROJECTS = C:\\out\\A.exe\nC:\\out\\A.exe: A.dpr\n", "A.dpr@2"},
      {"PROJECTS = My App.exe \"Your App.exe\"\nMy App.exe: My App.dpr\n\"Your App.exe\": \"Your App.dpr\"",
       "My App.dpr@2 Your App.dpr@3"},
      {"PROJECTS = A.exe\n\nA.exe: \"\"", "! G(3): the rule for \"A.exe\" names no project."},
      {"\nPROJECTS = A.exe B.exe\nA.exe: A.dpr", "! G(2): there is no rule for \"B.exe\"."},
      {"program P; uses A;", "! G: this is no project group: it has no macro PROJECTS."},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Outcome([&] { return References(ReadBpg(row.Input, "G")); }), row.Outcome) << row.Input;
  }
}

TEST(ProjectPathTest, Names) {
  const TRow rows[] = {
      {"A.pas", "C:\\App\\Src\\A.pas"},
      {"x/y/A.pas", "C:\\App\\Src\\x\\y\\A.pas"},
      {"../x/./A.pas", "C:\\App\\x\\A.pas"},
      {"..\\..\\..\\..\\A.pas", "C:\\A.pas"},
      {"\\lib\\A.pas", "C:\\lib\\A.pas"},
      {"d:\\x\\..\\A.pas", "d:\\A.pas"},
      {"\\\\server\\share\\x\\..\\A.pas", "\\\\server\\share\\A.pas"},
      {"/usr/../lib/A.pas", "Z:\\lib\\A.pas"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(ResolveName("C:\\App\\Src\\P.dpr", row.Input), row.Outcome) << row.Input;
}

// A project tree on drive C:.
class ProjectFileTest : public testing::Test {
 protected:
  void Write(std::string_view name, std::string_view text) { FTree.Write(name, text); }

  static std::string Read(std::string_view fileName) {
    return Outcome([&] {
      std::string list;
      if (IsGroupKind(ProjectKindOf(fileName))) {
        const TGroupFile group = ReadGroupFile(fileName);
        for (const std::string& project : group.Projects) list.append(project).append("\n");
        for (const std::string& line : group.PassedOver) list.append("? ").append(line).append("\n");
        return list;
      }
      const TProjectFile project = ReadProjectFile(fileName);
      list = project.MainSource + "\n";
      for (const TFileReference& unit : project.Units) list.append(unit.Name + "{" + unit.FormName + "}\n");
      for (const TMissingFile& missing : project.Missing) list.append("? " + missing.Message + "\n");
      return list;
    });
  }

 private:
  tests::TScratch FTree;
};

TEST_F(ProjectFileTest, Units) {
  for (const char* name :
       {"App/Unit1.pas", "App/OWN.PAS", "lib/Deep/far.pas", "App/Sub/Unit2.pas", "App/Only.pas"}) {
    Write(name, "unit x; end.");
  }
  Write("App/App.dpr",
        "program App;\nuses Forms, Own,\n Unit1 in 'unit1.PAS' {Form1},\n Unit2 in 'sub/Unit2.pas',\n"
        " Far in '..\\Lib\\deep\\Far.pas', Gone in 'Gone.pas',\n Unit1 in 'UNIT1.pas';\nbegin end.");
  Write("App/App.dproj",
        "<Project><PropertyGroup><MainSource>App.dpr</MainSource></PropertyGroup>\n"
        "<DCCReference Include='vcl.dcp'/><DCCReference Include='Only.pas'/><DCCReference "
        "Include='Unit1.pas'/>\n<DCCReference Include='Lost.pas'/></Project>");
  Write("App/Old.bdsproj", "<BorlandProject><Source Name='MainSource'>app.DPR</Source></BorlandProject>");
  Write("App/Half.dproj",
        "<Project>\n<PropertyGroup><MainSource>Half.dpr</MainSource></PropertyGroup><DCCReference "
        "Include='Only.pas'/></Project>");

  const std::string source =
      "C:\\App\\Own.pas{}\nC:\\App\\unit1.PAS{Form1}\nC:\\App\\sub\\Unit2.pas{}\nC:\\Lib\\deep\\Far.pas{}\n";
  const std::string gone = "(5): \"C:\\App\\Gone.pas\" does not exist.\n";
  EXPECT_EQ(Read("C:\\App\\App.dpr"), "C:\\App\\App.dpr\n" + source + "? C:\\App\\App.dpr" + gone);
  EXPECT_EQ(Read("C:\\App\\Old.bdsproj"), "C:\\App\\app.DPR\n" + source + "? C:\\App\\app.DPR" + gone);
  EXPECT_EQ(Read("C:\\App\\App.dproj"),
            "C:\\App\\App.dpr\nC:\\App\\Only.pas{}\nC:\\App\\Unit1.pas{Form1}\nC:\\App\\Own.pas{}\n"
            "C:\\App\\sub\\Unit2.pas{}\nC:\\Lib\\deep\\Far.pas{}\n"
            "? C:\\App\\App.dproj(3): \"C:\\App\\Lost.pas\" does not exist.\n? C:\\App\\App.dpr" +
                gone);
  EXPECT_EQ(Read("C:\\App\\Half.dproj"),
            "\nC:\\App\\Only.pas{}\n? C:\\App\\Half.dproj(2): \"C:\\App\\Half.dpr\" does not exist.\n");
}

// Converts each byte of `latin1` to a UTF-16 character.
std::string Utf16(std::string_view latin1, bool lowFirst) {
  std::string bytes;
  for (const char c : latin1) bytes.append({lowFirst ? c : '\0', lowFirst ? '\0' : c});
  return bytes;
}

TEST_F(ProjectFileTest, Encodings) {
  Write("Gr\xC3\xBCn.pas", "");
  Write("ansi.dpr", "program P; uses Gr\xFCn;");
  Write("utf8.dpr", "\xEF\xBB\xBFprogram P; uses Gr\xC3\xBCn;");
  const std::string source16 = "program P; uses Gr\xFCn;";
  const std::string xml16 =
      "<?xml version='1.0' encoding='utf-16'?><Project><DCCReference Include='Gr\xFCn.pas'/></Project>";
  Write("utf16.dpr", "\xFF\xFE" + Utf16(source16, true));
  Write("utf16.dproj", "\xFF\xFE" + Utf16(xml16, true));
  Write("utf16be.dproj", "\xFE\xFF" + Utf16(xml16, false));
  Write("ansi.dproj", "<Project><DCCReference Include='Gr\xFCn.pas'/></Project>");
  Write("utf8.dproj", "<Project><DCCReference Include='Gr\xC3\xBCn.pas'/></Project>");
  for (const char* name :
       {"ansi.dpr", "utf8.dpr", "utf16.dpr", "ansi.dproj", "utf8.dproj", "utf16.dproj", "utf16be.dproj"}) {
    const std::string path = std::string("C:\\") + name;
    const std::string source = path.ends_with("dpr") ? path : "";
    EXPECT_EQ(Read(path), source + "\nC:\\Gr\xC3\xBCn.pas{}\n");
  }
  // In these code pages the second byte of a character can be a brace, a backslash, or next to an apostrophe.
  ASSERT_TRUE(win::SetACP(932));
  Write("sjis.dpr", "program P; uses { \x83\x7D } Gone in '\x83\x5C.pas', {\x83\x7B} A in 'A.pas';");
  EXPECT_EQ(Read("C:\\sjis.dpr"),
            "C:\\sjis.dpr\n? C:\\sjis.dpr(1): \"C:\\\xE3\x82\xBD.pas\" does not exist.\n"
            "? C:\\sjis.dpr(1): \"C:\\A.pas\" does not exist.\n");
  ASSERT_TRUE(win::SetACP(1252));
}

TEST_F(ProjectFileTest, BadProjects) {
  Write("Folder.dpr/x", "");
  Write("Unit.pas/x", "");
  Write("App.dpr", "program App;\nuses\n  Forms, A in 'Unit.pas';");
  Write("App.dof", "");
  Write("High.dpr", "\xFE\xFF" + Utf16("program High;", false));
  Write("High.bpg", "\xFE\xFF" + Utf16("PROJECTS =", false));
  Write("Half.dproj", "\xFE\xFF<");
  Write("None.bdsproj", "<BorlandProject>\n<Source Name='MainSource'>Gone.dpr</Source></BorlandProject>");
  const TRow rows[] = {
      {"C:\\App.dpr", "! C:\\App.dpr(3): \"C:\\Unit.pas\" is a folder, not a unit."},
      {"C:\\App.dof",
       "! C:\\App.dof: this is no project: its extension is none of .dpr, .dpk, .dproj, .bdsproj, .bpg, "
       ".groupproj, .bdsgroup."},
      {"C:\\None.bdsproj", "! C:\\None.bdsproj(2): the main source \"C:\\Gone.dpr\" does not exist."},
      {"C:\\High.dpr",
       "! C:\\High.dpr: big-endian UTF-16 is read in XML files only; save it as UTF-8 with a byte order "
       "mark."},
      {"C:\\High.bpg",
       "! C:\\High.bpg: big-endian UTF-16 is read in XML files only; save it as UTF-8 with a byte order "
       "mark."},
      {"C:\\Half.dproj", "! C:\\Half.dproj: UTF-16 text with an odd number of bytes."},
      {"C:\\Folder.dpr", "! C:\\Folder.dpr: this is a folder, not a project file."},
      {"C:\\Gone.dpr", "! Cannot open file \"C:\\Gone.dpr\". The system cannot find the file specified."},
  };
  for (const auto& row : rows) EXPECT_EQ(Read(row.Input), row.Outcome);
}

std::string Groupproj(std::initializer_list<const char*> names) {
  std::string xml = "<Project>\n";
  for (const char* name : names) xml.append("<Projects Include='").append(name).append("'/>\n");
  return xml + "</Project>";
}

TEST_F(ProjectFileTest, GroupsAndCycles) {
  Write("A.dpr", "program A;");
  Write("B.dproj", "");
  Write("Bad.dpr/x", "");
  Write("All.groupproj", Groupproj({"sub\\In.bpg", "B.dproj", "x.cbproj", "a.DPR", "sub\\In.bpg"}));
  Write("sub/In.bpg", "PROJECTS = A.exe\nA.exe: ..\\A.dpr");
  Write("One.groupproj", Groupproj({"A.dpr", "Two.groupproj"}));
  Write("Two.groupproj", Groupproj({"B.dproj", "b.dproj", ".\\ONE.groupproj"}));
  Write("Lost.groupproj", Groupproj({"A.dpr", "sub\\Lost.dproj"}));
  Write("Folder.groupproj", Groupproj({"Bad.dpr"}));
  const TRow rows[] = {
      {"C:\\All.groupproj",
       "C:\\A.dpr\nC:\\B.dproj\n? C:\\All.groupproj(4): \"C:\\x.cbproj\" is not a Delphi project and is "
       "skipped.\n"},
      {"C:\\One.groupproj", "! C:\\Two.groupproj(4): the group \"C:\\ONE.groupproj\" leads back to itself."},
      {"C:\\Lost.groupproj", "! C:\\Lost.groupproj(3): the project \"C:\\sub\\Lost.dproj\" does not exist."},
      {"C:\\Folder.groupproj", "! C:\\Folder.groupproj(2): the project \"C:\\Bad.dpr\" is a folder."},
  };
  for (const auto& row : rows) EXPECT_EQ(Read(row.Input), row.Outcome);
}

}  // namespace
}  // namespace host
