// The units that a converted unit gets, and those that it loses.
#include <gtest/gtest.h>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "completion/UsesStep.h"

namespace {

using completion::TUsesRefusal;

// Two old units. Bde declares "dbinit", and may declare what begins with "xlt".
std::string CompleteUses(const std::string& text, std::string* told = nullptr) {
  const completion::TUsesRules rules = {
      "DBTables",
      ", New1, New2",
      [](std::string_view name) { return name == "TNew"; },
      [](std::string_view unit) { return unit == "DBTables" || unit == "Bde" || unit == "Data.Bde"; },
      [](std::string_view name, std::string_view unit) {
        return unit == "DBTables" ? name == "tquery" || name == "tsession" : name == "dbinit";
      },
      [](std::string_view name, std::string_view unit) { return unit == "Bde" && name.starts_with("xlt"); }};
  const auto tell = [&](TUsesRefusal refusal, size_t offset, std::string_view unit) {
    if (told != nullptr)
      *told += (refusal == TUsesRefusal::Source  ? "source"
                : refusal == TUsesRefusal::Stuck ? "stuck "
                                                 : "conditional ") +
               std::string(unit) + "@" + std::to_string(offset) + " ";
  };
  return completion::CompleteUses(text, qrl::TEncoding::Default(), rules, {tell, [](std::string_view) {}});
}

struct TClauseRow {
  const char* What;
  std::string Before, After;
};

// Returns a unit with one clause in each section, as the conversion writes it.
std::string Unit(const std::string& interfacePart, const std::string& implementationPart) {
  return "unit U;\r\ninterface\r\n" + interfacePart + "\r\nimplementation\r\n" + implementationPart +
         "\r\nend.\r\n";
}

TEST(UsesStepTest, Table) {
  const TClauseRow rows[] = {
      {"the old unit gives its place", Unit("uses A, DBTables, New1, New2, B;\r\nvar x: TNew;", ""),
       Unit("uses A, New1, New2, B;\r\nvar x: TNew;", "")},
      {"it stays where something of it is left, or is named itself",
       Unit("uses A, DBTables, New1, New2, B, Bde;\r\nvar x: TNew; s: TSession; b: Data.Bde.X;", ""),
       Unit("uses A, DBTables, New1, New2, B, Bde;\r\nvar x: TNew; s: TSession; b: Data.Bde.X;", "")},
      {"what strings and comments name does not count",
       Unit("uses DBTables, New1, New2;\r\nvar x: TNew = 'TQuery'; // TSession", ""),
       Unit("uses New1, New2;\r\nvar x: TNew = 'TQuery'; // TSession", "")},
      {"a name that is not in the list; a label", Unit("uses Bde, New1;", "begin y := xltA; xltB: x end;"),
       Unit("uses Bde, New1;", "begin y := xltA; xltB: x end;")},
      {"names that the unit declares, and members",
       Unit("uses Bde, New1;\r\ntype xltT = class xltA, xltB: T; procedure xltC(xltD: xltT); end;",
            "procedure xltT.xltC; var xltE: T; begin case xltE of 1..2: M.DbInit := xltA end end;"),
       Unit("uses New1;\r\ntype xltT = class xltA, xltB: T; procedure xltC(xltD: xltT); end;",
            "procedure xltT.xltC; var xltE: T; begin case xltE of 1..2: M.DbInit := xltA end end;")},
      {"no old unit: at the end of the clause", Unit("uses A, B;\r\nvar x: TNew;", ""),
       Unit("uses A, B, New1, New2;\r\nvar x: TNew;", "")},
      {"one a line stays one a line",
       Unit("uses\r\n  A,\r\n  DBTables, New1, New2,\r\n  B;  // last\r\nvar x: TNew;", ""),
       Unit("uses\r\n  A,\r\n  New1,\r\n  New2,\r\n  B;  // last\r\nvar x: TNew;", "")},
      {"commas first", Unit("uses\n    A\n  , B {b}\n  ;\nvar x: TNew;", ""),
       Unit("uses\n    A\n  , B\n  , New1\n  , New2 {b}\n  ;\nvar x: TNew;", "")},
      {"the implementation needs them", Unit("uses A;", "uses B;\r\nvar x: TNew;"),
       Unit("uses A;", "uses B, New1, New2;\r\nvar x: TNew;")},
      {"the interface needs them, and the old unit is in the implementation",
       Unit("uses A;\r\nvar x: TNew;", "uses B, DBTables, New1, New2;"),
       Unit("uses A, New1, New2;\r\nvar x: TNew;", "uses B;")},
      {"no clause yet", Unit("var x: TNew;", ""),
       "unit U;\r\ninterface\r\n\r\nuses\r\n  New1, New2;\r\nvar x: TNew;\r\nimplementation\r\n\r\nend.\r\n"},
      {"the last one of a clause goes, and the clause", Unit("uses A,\r\n  Bde;", "uses DBTables;\r\nbegin"),
       Unit("uses A;", "uses New1, New2;\r\nbegin")},
      {"old units with a line of their own",
       Unit("uses\r\n  Bde,\r\n  A,  // a\r\n  Data.Bde {x},\r\n  B;", ""),
       Unit("uses\r\n  A,  // a\r\n   {x}\r\n  B;", "")},
      {"a unit without a list stays", Unit("uses Old3, Bde;", ""), Unit("uses Old3;", "")},
      {"a second conversion",
       Unit("uses DBTables, New1, New2, New1, New2;\r\nvar x: TNew; s: TSession;", "uses new1;\r\n-"),
       Unit("uses DBTables, New1, New2;\r\nvar x: TNew; s: TSession;", "-")},
      {"a program",
       "program P;\r\nuses\r\n  Forms, DBTables, New1, New2,\r\n  M in 'M.pas' {F};\r\nvar x: TNew;\r\nbegin "
       "end.",
       "program P;\r\nuses\r\n  Forms, New1, New2,\r\n  M in 'M.pas' {F};\r\nvar x: TNew;\r\nbegin end."},
      {"a program without a heading", "uses Forms, DBTables;\r\nvar x: TNew;\r\nbegin end.",
       "uses Forms, New1, New2;\r\nvar x: TNew;\r\nbegin end."},
      {"the last ones of a line",
       Unit("uses A, Bde, Data.Bde,\r\n  New1, New2,\tBde,\n  B;\r\nvar x: TNew;", ""),
       Unit("uses A,\r\n  New1, New2,\n  B;\r\nvar x: TNew;", "")},
      {"commas without blanks", Unit("uses A,DBTables, New1, New2,B;\r\nvar x: TNew;", ""),
       Unit("uses A,New1,New2,B;\r\nvar x: TNew;", "")},
      {"a comment stays in a clause whose only unit is replaced",
       Unit("uses {$I a.inc} DBTables, New1, New2;\r\nvar x: TNew;", "uses Bde {x};"),
       Unit("uses {$I a.inc} New1, New2;\r\nvar x: TNew;", "{x}")},
      {"the comments of a clause that goes have lines of their own",
       Unit("uses New1, New2;\r\nvar x: TNew;", "uses // a\r\n  Bde, (* b\r\n*)\r\n  DBTables {c}; type"),
       Unit("uses New1, New2;\r\nvar x: TNew;", "// a\r\n(* b\r\n*)\r\n{c}\r\ntype")},
      {"a clause with a directive stays", Unit("uses New1, New2;\r\nvar x: TNew;", "uses {$I a.inc} Bde;"),
       Unit("uses New1, New2;\r\nvar x: TNew;", "uses {$I a.inc} Bde;")},
      {"new units that the interface needs move there",
       Unit("uses A, DBTables, New1, New2;\r\nvar x: TNew;", "uses B, New1,\r\n  C;"),
       Unit("uses A, New1, New2;\r\nvar x: TNew;", "uses B,\r\n  C;")},
      {"and out of a clause of nothing else", Unit("var x: TNew;", "uses new2 {x};"),
       "unit U;\r\ninterface\r\n\r\nuses\r\n  New2;\r\nvar x: TNew;\r\nimplementation\r\n{x}\r\nend.\r\n"},
      {"not where each clause has one", Unit("uses New1;\r\nvar x: TNew;", "uses New2;"),
       Unit("uses New1;\r\nvar x: TNew;", "uses New2;")},
      {"lines that end with CR",
       "unit U;\rinterface\ruses\r  A, // a\r  Bde,\r  DBTables, New1, New2,\r  B;\rvar x: "
       "TNew;\rimplementation\ruses // b\r  Bde;\rend.\r",
       "unit U;\rinterface\ruses\r  A, // a\r  New1,\r  New2,\r  B;\rvar x: TNew;\rimplementation\r// "
       "b\rend.\r"},
      {"lines that end with CR CR LF",
       Unit("uses\r\r\n  A,\r\r\n  Bde,\r\r\n  DBTables, New1, New2,\r\r\n  B;\r\r\nvar x: TNew;", ""),
       Unit("uses\r\r\n  A,\r\r\n  New1,\r\r\n  New2,\r\r\n  B;\r\r\nvar x: TNew;", "")},
      {"a clause that goes leaves its comments where they are",
       Unit("uses New1, New2;\r\nvar x: TNew;", "uses\r\n  // first\r\n  Bde {second};"),
       Unit("uses New1, New2;\r\nvar x: TNew;", "  // first\r\n{second}")},
      {"text after the end",
       Unit("uses DBTables, New1, New2;\r\nvar x: TNew;", "") + "uses DBTables; TSession",
       Unit("uses New1, New2;\r\nvar x: TNew;", "") + "uses DBTables; TSession"},
      {"an interface type is no section", Unit("type I = interface end; x = TNew;", ""),
       "unit U;\r\ninterface\r\n\r\nuses\r\n  New1, New2;\r\ntype I = interface end; x = "
       "TNew;\r\nimplementation\r\n\r\nend.\r\n"},
  };
  for (const TClauseRow& row : rows) {
    std::string told;
    const std::string after = CompleteUses(row.Before, &told);
    EXPECT_EQ(after, row.After) << row.What;
    EXPECT_EQ(told, "") << row.What;
    EXPECT_EQ(CompleteUses(after), row.After) << row.What << ", once more";
  }
}

// Returns the units of the first uses clause as the compiler sees them if S and T are defined or not; an
// empty name where one is missing.
std::vector<std::string> UnitsOf(const std::string& text, bool hasS, bool hasT) {
  std::vector<std::string> units = {""};
  bool isActive = true;
  for (size_t i = text.find("uses") + 4; text[i] != ';'; ++i) {
    if (text[i] == '{') {
      const std::string directive = text.substr(i, text.find('}', i) - i);
      isActive = directive == "{$ENDIF" || (directive == "{$IFDEF S" && hasS) ||
                 (directive == "{$IFDEF T" && hasT) || (directive == "{$ELSE" && !isActive);
      i += directive.size();
    } else if (isActive && text[i] == ',') {
      units.emplace_back();
    } else if (isActive && text[i] > ' ') {
      units.back() += text[i];
    }
  }
  return units;
}

// Clauses with conditional items, in every configuration: they stay clauses, lose nothing that is no old
// unit, and list the new units once. A second run changes nothing.
TEST(UsesStepTest, ClausesWithDirectives) {
  std::mt19937 random(1);
  const char* const names[] = {"A", "B", "C", "DBTables", "Bde", "DBTables", "Bde"};
  const auto name = [&] { return std::string(names[random() % std::size(names)]); };
  const auto conditional = [&](const std::string& inner) {
    return std::string(random() % 2 == 0 ? "{$IFDEF S} " : "{$IFDEF T} ") + inner + " {$ENDIF} ";
  };
  const auto item = [&] {
    return random() % 4 == 0 ? conditional(name() + " {$ELSE} " + name()) : name() + " ";
  };
  const auto isKept = [](const std::string& unit) {
    return unit != "DBTables" && unit != "Bde" && unit != "New1" && unit != "New2";
  };
  for (int i = 0; i < 3000; ++i) {
    std::string items;
    while (random() % 3 == 0) items += conditional(name() + ",");
    items += item();
    for (size_t more = random() % 4; more > 0; --more)
      items += random() % 3 == 0 ? conditional(", " + name()) : ", " + item();
    const std::string before = Unit("uses " + items + ";\r\nvar x: TNew;", "");
    const std::string after = CompleteUses(before);
    EXPECT_EQ(CompleteUses(after), after) << "once more: " << before;
    for (const auto& [hasS, hasT] : {std::pair(false, false), {false, true}, {true, false}, {true, true}}) {
      std::vector<std::string> expected = UnitsOf(before, hasS, hasT), units = UnitsOf(after, hasS, hasT);
      EXPECT_EQ(
          std::count(units.begin(), units.end(), "New1") + std::count(units.begin(), units.end(), "New2"), 2)
          << before << after;
      std::erase_if(expected, std::not_fn(isKept));
      std::erase_if(units, std::not_fn(isKept));
      EXPECT_EQ(units, expected) << before << after;
    }
  }
}

// If a step is not certain, the unit stays unchanged.
TEST(UsesStepTest, Refusals) {
  const struct {
    std::string Before, After, Told;
  } rows[] = {
      {Unit("uses A, {$IFDEF X} DBTables, New1, New2, {$ENDIF} B;\r\nvar x: TNew;", ""),
       Unit("uses A, {$IFDEF X} DBTables, {$ENDIF} B, New1, New2;\r\nvar x: TNew;", ""),
       "conditional DBTables@39 "},
      {Unit("{$IFDEF X} uses A; {$ELSE} uses DBTables, New1, New2; {$ENDIF}", ""),
       Unit("{$IFDEF X} uses A; {$ELSE} uses DBTables, New1, New2; {$ENDIF}", ""), "source@0 "},
      {Unit("uses A;\r\nvar x: TNew;", "uses {$IFDEF X} New1, {$ENDIF} B;"),
       Unit("uses A;\r\nvar x: TNew;", "uses {$IFDEF X} New1, {$ENDIF} B;"), "stuck New1@75 source@0 "},
      {Unit("uses A;\r\nvar x: TNew;", "uses {$I b.inc} New1;"),
       Unit("uses A;\r\nvar x: TNew;", "uses {$I b.inc} New1;"), "stuck New1@75 source@0 "},
      {Unit("uses A;\r\nvar x: TNew;", "uses New1{$IFDEF X},{$ENDIF} B;"),
       Unit("uses A;\r\nvar x: TNew;", "uses New1{$IFDEF X},{$ENDIF} B;"), "stuck New1@64 source@0 "},
      {"uses DBTables, New1, New2;", "uses DBTables, New1, New2;", "source@0 "},
      {"", "", "source@0 "},
  };
  for (const auto& row : rows) {
    std::string told;
    EXPECT_EQ(CompleteUses(row.Before, &told), row.After);
    EXPECT_EQ(told, row.Told) << row.Before;
  }
}

}  // namespace
