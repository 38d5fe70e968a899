"""What the generator refuses: a description that doesn't hold together ends it with the place of the fault."""

import json
import pathlib
import shutil
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
SCHEMA = pathlib.Path(__file__).resolve().parents[2] / "schema"
sys.path.insert(0, str(SCHEMA))
import generate  # noqa: E402


class Refusals(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.schema = pathlib.Path(self.folder.name) / "schema"
        shutil.copytree(SCHEMA, self.schema)
        self.addCleanup(setattr, generate, "SCHEMA", generate.SCHEMA)
        generate.SCHEMA = self.schema

    def change(self, file, old, new):
        path = self.schema / file
        text = path.read_text(encoding="utf-8")
        self.assertIn(old, text)
        path.write_text(text.replace(old, new, 1), encoding="utf-8")

    def expect_refused(self, why):
        with self.assertRaises(generate.SchemaError) as refused:
            generate.Model()
        self.assertIn(why, str(refused.exception))

    def test_description_is_whole(self):
        self.assertEqual(len(generate.Model().records), 46)

    def test_kind_code_out_of_order(self):
        self.change("records/hierarchy.json", '"kind": 8', '"kind": 9')
        self.expect_refused("CO: its kind code is its place in the alphabet, 8")

    def test_unknown_type(self):
        self.change("records/hierarchy.json", '"name": "f1", "type": "f32"', '"name": "f1", "type": "f16"')
        self.expect_refused("CO, f1: there is no type f16")

    def test_unknown_writer(self):
        self.change("records/hierarchy.json", '"writer": "input"', '"writer": "nobody"')
        self.expect_refused("CO, id: there is no writer nobody")

    def test_reference_to_no_record(self):
        self.change("records/hierarchy.json", '"refers": "CO"', '"refers": "COMPANY"')
        self.expect_refused("DV, co: there is no record COMPANY")

    def test_moved_range_of_bytes(self):
        self.change("records/hierarchy.json", '{"bytes": 4, "at": 84}', '{"bytes": 4, "at": 88}')
        self.expect_refused("KV, bytes at 88: the range begins at 84, not at 88")

    def test_field_named_twice(self):
        self.change("records/hierarchy.json", '"name": "f2"', '"name": "f1"')
        self.expect_refused("CO: a name stands twice")

    def test_chain_without_a_head(self):
        self.change("relations.json", '"head": "r_co_dv"', '"head": "r_dv"')
        self.expect_refused("CO: there is no field r_dv")

    def test_end_that_belongs_to_another_branch(self):
        self.change("branches.json", '"owner": "iln"', '"owner": "iana_p"')
        self.expect_refused("LN2, iana_p: it must refer to LN")

    def test_message_code_given_twice(self):
        self.change("messages.json", '"code": "KV_VMIN_NEGATIVE"', '"code": "KV_VMAX_NEGATIVE"')
        self.expect_refused("KV_VMAX_NEGATIVE: a code stands twice")

    def test_message_about_a_field_that_the_table_has_not(self):
        self.change("messages.json", '"field": "vmin"', '"field": "vlow"')
        self.expect_refused("KV: there is no field vlow")

    def test_message_of_an_unknown_table(self):
        self.change("messages.json", '"tables": ["KV", "XF"]', '"tables": ["KV", "XFR"]')
        self.expect_refused("XFR_STATION_UNKNOWN: there is no record XFR")

    def test_message_with_what_to_do_in_one_language(self):
        self.change("messages.json", ', "do_zh": "填写不小于vmin的vmax"', "")
        self.expect_refused("KV_LIMITS_REVERSED: what to do is given in one language only")

    def test_message_without_an_english_text(self):
        self.change("messages.json", '"en": "its upper voltage limit is below its lower one"', '"en": ""')
        self.expect_refused("KV_LIMITS_REVERSED: the English text is empty")

    def test_reason_of_no_pattern(self):
        self.change("messages.json", '{"name": "badVbase"', '{"name": "badVoltage"')
        self.expect_refused("KV, badVoltage: there is no such pattern")


class Output(unittest.TestCase):
    def test_a_new_field_reaches_class_row_and_page(self):
        with tempfile.TemporaryDirectory() as folder:
            schema = pathlib.Path(folder) / "schema"
            shutil.copytree(SCHEMA, schema)
            path = schema / "records" / "hierarchy.json"
            group = json.loads(path.read_text(encoding="utf-8"))
            group["records"][0]["fields"].append(
                {"name": "load", "type": "f64", "unit": "MW", "writer": "input", "meaning": "load of the company"})
            path.write_text(json.dumps(group), encoding="utf-8")
            before, generate.SCHEMA = generate.SCHEMA, schema
            try:
                files = generate.render(generate.Model())
            finally:
                generate.SCHEMA = before
        self.assertIn("f64 load = 0;     ///< load of the company, in MW", files["model/records/hierarchy.h"])
        self.assertIn('{"load", FieldType::kF64, offsetof(CO, load), KIND_NONE, "MW", "input", "load of the company"}',
                      files["model/records/hierarchy.cpp"])
        self.assertIn("real8 load{};", files["rtdb/rows/hierarchy.h"])
        self.assertIn("FIELD(load)", files["rtdb/rows/hierarchy.h"])
        self.assertIn("sizeof(co) == 52", files["rtdb/rows/hierarchy.h"])
        self.assertIn("| `load` | f64 | MW |  | input | load of the company |", files["docs/records/CO.md"])

    def test_a_message_reaches_constant_list_and_page(self):
        files = generate.render(generate.Model())
        self.assertIn('inline constexpr Message kNoNode<CP> = Error("CP_NODE_EMPTY", "nd", " 关联的结点名称为空.");',
                      files["validation/internal/messages.h"])
        self.assertIn('{"CP_NODE_EMPTY", Severity::kError, KIND_CP, "nd",', files["validation/internal/message_rows.inc"])
        self.assertIn("| `CP_NODE_EMPTY` | error | `nd` | it names no node<br>关联的结点名称为空. |",
                      files["docs/messages.md"])


if __name__ == "__main__":
    unittest.main()
