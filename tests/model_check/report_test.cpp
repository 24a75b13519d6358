#include "model_check/report.hpp"

#include <fstream>

#include <gtest/gtest.h>

namespace velm {
namespace {

std::vector<FileFindings> sample()
{
    FileFindings input;
    input.file = "a river.inp";
    FindingList list(input, 1);
    list.add({.kind = FindingKind::time_repeats,
              .message = "time 1 follows 1",
              .place = {12, 3},
              .section = "loads",
              .field = "system 1, load 1, pair 2, time"});
    list.add({.kind = FindingKind::time_repeats, .message = "unlisted"});
    list.count(FindingKind::digits_lost, 5);
    FileFindings database;
    database.file = "b.db";
    database.database = true;
    FindingList(database, 1)
        .add({.kind = FindingKind::database_row,
              .message = "'\"' is not a number",
              .table = "segment",
              .row = "segment 2",
              .column = "volume",
              .value = "\""});
    return {input, database};
}

TEST(Report, Text)
{
    EXPECT_EQ(
        text_report(sample()),
        "a river.inp:12:3: warning V204 time repeats: loads, system 1, load 1, pair 2, time: time 1 follows 1; keep "
        "one pair for each time, or move one a little\n"
        "a river.inp: and 1 more of V204 time repeats\n"
        "a river.inp: and 5 more of V301 digits lost\n"
        "b.db: error V401 database row: table segment, segment 2, column volume: '\"' is not a number; correct the "
        "row\n");
    EXPECT_EQ(counts_in_words(sample()), "1 error, 2 warnings, 5 notes");
}

TEST(Report, Json)
{
    EXPECT_EQ(json_report(sample()), R"({
  "files": [
    {
      "file": "a river.inp",
      "kind": "input file",
      "counts": {
        "V204": 2,
        "V301": 5
      },
      "findings": [
        {
          "code": "V204",
          "name": "time repeats",
          "level": "warning",
          "message": "time 1 follows 1",
          "remedy": "keep one pair for each time, or move one a little",
          "line": 12,
          "column": 3,
          "section": "loads",
          "field": "system 1, load 1, pair 2, time"
        }
      ]
    },
    {
      "file": "b.db",
      "kind": "model database",
      "counts": {
        "V401": 1
      },
      "findings": [
        {
          "code": "V401",
          "name": "database row",
          "level": "error",
          "message": "'\"' is not a number",
          "remedy": "correct the row",
          "table": "segment",
          "row": "segment 2",
          "table_column": "volume",
          "value": "\""
        }
      ]
    }
  ]
}
)");
}

TEST(Report, DocumentAndTableOfRulesAgree)
{
    std::ifstream file(VELM_FINDINGS_DOCUMENT);
    std::string document;
    std::string headings;
    std::string expected;
    for (std::string line; std::getline(file, line);) {
        headings += line.starts_with("### V") ? line.substr(4) + '\n' : "";
        document += line + ' ';
    }
    for (const FindingRule& rule : finding_rules()) {
        expected +=
            std::string(rule.code) + ' ' + std::string(rule.name) + " (" + std::string(name_of(rule.level)) + ")\n";
        EXPECT_NE(document.find("*Remedy:* " + std::string(rule.remedy) + "."), std::string::npos) << rule.code;
    }
    EXPECT_EQ(headings, expected);
}

} // namespace
} // namespace velm
