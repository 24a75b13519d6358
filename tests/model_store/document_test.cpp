#include "tests/model_store/store_fixture.hpp"

namespace velm {

namespace {

std::string after(const std::string& line, const std::string& mark)
{
    const std::size_t place = line.find(mark);
    return place == std::string::npos ? "" : line.substr(place + mark.size());
}

/// The document's tables as the schema has them: each table's comment, then each column's type, default and comment.
std::string tables_of_the_schema()
{
    std::string document;
    std::string comment;
    std::string rest(model_schema());
    for (std::string line; !rest.empty(); rest.erase(0, line.size() + 1)) {
        line = rest.substr(0, rest.find('\n'));
        if (line.starts_with("-- ")) {
            comment = line.substr(3);
        } else if (const std::string table = after(line, "CREATE TABLE "); !table.empty()) {
            document += "\n### " + table.substr(0, table.size() - 2) + "\n\n" + comment +
                        "\n\n| Column | Type | Default | Meaning |\n|---|---|---|---|\n";
        } else if (const std::string meaning = after(line, " -- "); !meaning.empty() && line.starts_with("    ")) {
            const std::string column = line.substr(4, line.find(' ', 4) - 4);
            const std::string type = after(line, column + " ");
            const std::string given = after(line, " DEFAULT ");
            document += "| `" + column + "` | " + type.substr(0, type.find(' ')) + " | " +
                        given.substr(0, given.find_first_of(" ,")) + " | " + meaning + " |\n";
        }
    }
    return document;
}

} // namespace

TEST(Document, lists_the_tables_as_the_schema_has_them)
{
    const std::string document = content_of(VELM_DATABASE_DOCUMENT);
    const std::string tables = tables_of_the_schema();
    EXPECT_NE(document.find(tables), std::string::npos) << "put these into the document:\n" << tables;
}

} // namespace velm
