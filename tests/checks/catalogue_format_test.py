import sqlite3

from catalogue_format import compare, tables_in_catalogue, tables_in_document
from sample import SampleTree

DOCUMENT = """
## Drive

| Position | Field | Type | Meaning |
|---|---|---|---|
| 0 | `id number` | integer | the number |
| 1 | `Total Size` | number | megabytes |

## Identifiers

Text without a table.
"""


class CatalogueFormat(SampleTree):
    def compared(self, statement):
        path = self.root / "kvt.mde"
        with sqlite3.connect(path) as store:
            store.execute(statement)
        return list(compare(tables_in_document(DOCUMENT), tables_in_catalogue(path)))

    def test_the_same_tables_pass(self):
        self.assertEqual(self.compared('create table Drive("id number" INTEGER, "Total Size" DOUBLE)'), [])

    def test_another_order_is_told(self):
        found = self.compared('create table Drive("Total Size" DOUBLE, "id number" INTEGER)')
        self.assert_one(found, "Drive: the fields are")

    def test_another_type_is_told(self):
        found = self.compared('create table Drive("id number" INTEGER, "Total Size" TEXT)')
        self.assert_one(found, "Drive.Total Size", "told as number")

    def test_a_field_more_is_told(self):
        found = self.compared('create table Drive("id number" INTEGER, "Total Size" DOUBLE, other TEXT)')
        self.assert_one(found, "other")

    def test_another_table_is_told(self):
        found = self.compared("create table Discs(a INTEGER)")
        self.assertEqual(len(found), 2)
