/* scan DATABASE: steps through every row and column of every table, on one thread, and keeps nothing: what no program
 * that reads a model from SQLite can do without. */
#include <sqlite3.h>
#include <stdio.h>
#include <stdlib.h>

static double sum;

static void require(sqlite3* database, int holds)
{
    if (!holds) {
        fprintf(stderr, "scan: %s\n", sqlite3_errmsg(database));
        exit(1);
    }
}

static void scan_table(sqlite3* database, const char* table)
{
    sqlite3_stmt* rows = NULL;
    char* const query = sqlite3_mprintf("SELECT * FROM \"%w\"", table);
    require(database, sqlite3_prepare_v2(database, query, -1, &rows, NULL) == SQLITE_OK);
    const int columns = sqlite3_column_count(rows);
    int status;
    while ((status = sqlite3_step(rows)) == SQLITE_ROW) {
        for (int column = 0; column < columns; ++column) {
            switch (sqlite3_column_type(rows, column)) {
            case SQLITE_INTEGER: sum += sqlite3_column_int(rows, column); break;
            case SQLITE_FLOAT: sum += sqlite3_column_double(rows, column); break;
            case SQLITE_TEXT: sum += *sqlite3_column_text(rows, column); break;
            default: break;
            }
        }
    }
    require(database, status == SQLITE_DONE);
    sqlite3_finalize(rows);
    sqlite3_free(query);
}

int main(int argument_count, char** arguments)
{
    sqlite3* database = NULL;
    sqlite3_stmt* tables = NULL;
    if (argument_count != 2) {
        return 2;
    }
    require(database, sqlite3_open_v2(arguments[1], &database, SQLITE_OPEN_READONLY, NULL) == SQLITE_OK);
    require(database, sqlite3_prepare_v2(database, "SELECT name FROM sqlite_schema WHERE type = 'table'", -1, &tables,
                                         NULL) == SQLITE_OK);
    while (sqlite3_step(tables) == SQLITE_ROW) {
        scan_table(database, (const char*)sqlite3_column_text(tables, 0));
    }
    sqlite3_finalize(tables);
    sqlite3_close(database);
    printf("%g\n", sum);
    return 0;
}
