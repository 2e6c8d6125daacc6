"""What tools/check-windows finds in the text of a source. Its runs of clang are CI's."""

import importlib.machinery
import importlib.util
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
LIMIT = 16380


def load_tool():
    loader = importlib.machinery.SourceFileLoader("check_windows", str(ROOT / "tools/check-windows"))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(loader.name, loader))
    sys.dont_write_bytecode = True
    loader.exec_module(module)
    return module


TOOL = load_tool()


class CheckWindows(unittest.TestCase):
    def complaints(self, text: str, name: str = "host/Some.cpp") -> list:
        return TOOL.names_say(Path(name), text)

    def assert_longest(self, before: str, character: str, count: int, after: str) -> None:
        """That many of the character are allowed and one more is not."""
        self.assertEqual(self.complaints(before + character * count + after), [])
        found = self.complaints(before + character * (count + 1) + after)
        self.assertEqual(len(found), 1, found)
        self.assertIn("MSVC allows 16380", found[0])

    def test_a_narrow_literal_counts_its_bytes_of_utf_8(self):
        self.assert_longest('auto text = "', "a", LIMIT, '";')
        self.assert_longest('auto text = "', "画", LIMIT // 3, '";')
        self.assert_longest('auto text = R"x(', "a", LIMIT, ')x";')
        self.assert_longest('f(QLatin1String("', "a", LIMIT, '"));')

    def test_a_wide_literal_counts_two_bytes_for_each_character(self):
        for before, after in (('L"', '"'), ('u"', '"'), ('LR"(', ')"'), ('_T("', '")'), ('QStringLiteral("', '")'),
                              ('QStringLiteral(\n    R"(', ')")'), ('TEXT( "', '")')):
            with self.subTest(before=before):
                self.assert_longest(f"auto text = {before}", "a", LIMIT // 2, f"{after};")
                self.assert_longest(f"auto text = {before}", "画", LIMIT // 2, f"{after};")

    def test_a_surrogate_pair_counts_four_bytes(self):
        self.assert_longest('auto text = L"', "\U0001f600", LIMIT // 4, '";')
        self.assert_longest('auto text = L"', "\\U0001f600", LIMIT // 4, '";')
        self.assert_longest('auto text = U"', "a", LIMIT // 4, '";')

    def test_an_escape_counts_one_character(self):
        for escape in ("\\n", "\\\\", '\\"', "\\x7f", "\\012"):
            with self.subTest(escape=escape):
                self.assert_longest('auto text = L"', escape, LIMIT // 2, '";')
        self.assert_longest('auto text = "', "\\u753b", LIMIT // 3, '";')

    def test_adjacent_literals_are_limited_together_too(self):
        piece = "a" * 16000
        narrow = " // a comment\n".join([f'"{piece}"'] * 4)
        self.assertEqual(self.complaints(f"auto text = {narrow};"), [])
        found = self.complaints(f'auto text = {narrow} "{"a" * 1535}";')
        self.assertEqual(len(found), 1, found)
        self.assertIn("adjacent literals of 65536 bytes, MSVC allows 65535", found[0])
        # Literals with a comma between them are not adjacent.
        self.assertEqual(self.complaints("f(" + ", ".join([f'"{piece}"'] * 9) + ");"), [])

    def test_adjacent_literals_are_wide_when_one_is(self):
        wide = f'L"" "{"a" * 8000}" ' * 4
        self.assertEqual(self.complaints(f"auto text = {wide};"), [])
        self.assertEqual(len(self.complaints(f'auto text = {wide} "{"a" * 766}";')), 0)
        self.assertEqual(len(self.complaints(f'auto text = {wide} "{"a" * 767}";')), 1)

    def test_quotes_in_comments_and_characters_begin_no_literal(self):
        long = "a" * (LIMIT + 1)
        self.assertEqual(self.complaints(f"// it's \"{long}\"\n/* \"{long}\" */ char c = '\"'; int i; // {long}\n"), [])

    def test_a_utf_8_literal_is_named(self):
        for literal in ('u8"a"', 'u8R"(a)"', "u8'a'"):
            with self.subTest(literal=literal):
                self.assertEqual(len(self.complaints(f"auto text = {literal};")), 1)

    def test_the_entry_is_in_one_file(self):
        for text in ("extern \"C\" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) {", "#include <afxdllx.h>\n",
                     "f(_pRawDllMain);"):
            with self.subTest(text=text):
                self.assertEqual(len(self.complaints(text)), 1)
                self.assertEqual(self.complaints(text, "host/ZR_ZentriEntry.cpp"), [])
        self.assertEqual(self.complaints("// DllMain is elsewhere.\nauto text = \"DllMain\";"), [])


if __name__ == "__main__":
    unittest.main()
