"""Pictures, pages and bars of tables that are known; no engine is needed."""

import io
import re
import unittest
import xml.etree.ElementTree as ET

from explain_lib import terminal
from explain_lib.bars_picture import position_picture
from explain_lib.drawing import as_text
from explain_lib.evaluation import Evaluation
from explain_lib.figures import share_of_reach, signed, typeset
from explain_lib.page import position_page
from explain_lib.terms import TERMS
from support import SVG, line_of, table

# 31 of 62 for the phase.
HALF = "3qk3/8/8/8/8/8/8/RRBQK3 w - - 0 1"
NASTY = "<script>&\"'"
WIDE = terminal.Style(100, terminal.BLOCKS, False)
PLAIN = terminal.Style(80, terminal.PLAIN, False)


def evaluation_of(total=90, fen=HALF, **terms):
    position = line_of(fen).position
    return position, Evaluation(position.board, table(total, **terms))


def known():
    """100 - 40 + 30: the biggest is White's, the next one Black's."""
    return evaluation_of(material=(100, 100), king_attack=(-80, 0), passed_pawns=(0, 60))


def texts(root, tag):
    return ["".join(element.itertext()) for element in root.iter(tag)]


class PictureTest(unittest.TestCase):
    def draw(self, position, evaluation, fen=HALF):
        return ET.fromstring(as_text(position_picture(evaluation, position.board, "w", fen)))

    def bars(self, root):
        """(class, left edge, right edge) of the bars, in their order."""
        edges = []
        for rectangle in root.iter(SVG + "rect"):
            kind, left = rectangle.get("class"), float(rectangle.get("x", 0))
            if rectangle.get("height") == "12":
                edges.append((kind, left, left + float(rectangle.get("width"))))
        return edges

    def test_the_biggest_come_first_on_their_sides(self):
        root = self.draw(*known())
        names = [text for text in texts(root, SVG + "text") if text in TERMS]
        self.assertEqual(names, ["material", "king_attack", "passed_pawns"])
        material, material_end, attack, passed = self.bars(root)
        self.assertEqual([material[0], material_end[0]], ["white", "white-end"])
        self.assertEqual([attack[0], passed[0]], ["black", "white-end"])
        axis = material[1]
        self.assertAlmostEqual(material[2], material_end[1], 1)
        self.assertAlmostEqual(attack[2], axis, 1)
        self.assertAlmostEqual(passed[1], axis, 1)
        self.assertAlmostEqual((axis - attack[1]) / (material_end[2] - axis), 0.4, 1)

    def test_opposed_halves_have_a_mark_for_their_sum(self):
        position, evaluation = evaluation_of(-10, material=(100, -120))
        root = self.draw(position, evaluation)
        middle, end = self.bars(root)
        self.assertEqual((middle[0], end[0]), ("white", "black-end"))
        marks = [line for line in root.iter(SVG + "line") if line.get("class") == "net"]
        self.assertEqual(len(marks), 1)
        self.assertLess(end[1], float(marks[0].get("x1")))
        self.assertLess(float(marks[0].get("x1")), middle[1])
        self.assertEqual(
            [line for line in self.draw(*known()).iter(SVG + "line") if line.get("class") == "net"],
            [],
        )

    def test_all_terms_are_named_and_the_sums_told(self):
        position, evaluation = known()
        text = " ".join(texts(self.draw(position, evaluation), SVG + "text"))
        for name in TERMS:
            self.assertEqual(len(re.findall(rf"\b{name}\b", text)), 1, name)
        self.assertIn("+90 units", text)
        self.assertIn(f"+{90 / evaluation.pawn:.2f}", text)
        self.assertIn("middle game 50 %", text)
        self.assertIn("this agrees", text)

    def test_an_alarm_is_seen(self):
        position, evaluation = evaluation_of(12345, material=(100, 100))
        root = self.draw(position, evaluation)
        alarms = [t.text for t in root.iter(SVG + "text") if "alarm" in t.get("class")]
        self.assertIn("DO NOT AGREE", " ".join(alarms))

    def test_men_on_the_board(self):
        root = self.draw(*known())
        groups = [group.get("transform") for group in root.iter(SVG + "g")]
        self.assertEqual(len(groups), 7)
        # The rook of a1, on the first file and the lowest rank.
        self.assertIn("translate(40 282) scale(0.9)", groups)

    def test_nothing_but_equal(self):
        position, evaluation = evaluation_of(0, "4k3/8/8/8/8/8/8/4K3 w - - 0 1")
        root = self.draw(position, evaluation)
        self.assertEqual(self.bars(root), [])
        self.assertIn("0.00", texts(root, SVG + "text"))

    def test_escapes(self):
        position, evaluation = known()
        for text in (
            as_text(position_picture(evaluation, position.board, "w", NASTY)),
            self.page(position, evaluation, NASTY, NASTY),
        ):
            root = ET.fromstring(text)
            self.assertNotIn("<script>&", text)
            self.assertIn(NASTY, "".join(root.itertext()))

    def page(self, position, evaluation, fen, engine):
        picture = position_picture(evaluation, position.board, "w", fen)
        return position_page(evaluation, picture, "w", fen, engine)

    def test_the_page(self):
        position, evaluation = known()
        text = self.page(position, evaluation, HALF, "Orvelin")
        self.assertTrue(text.startswith("<!DOCTYPE html>"))
        root = ET.fromstring(text)
        rows = [[cell.text for cell in row] for row in root.find(".//tbody")]
        self.assertEqual(len(rows), len(TERMS))
        self.assertEqual(rows[0][::2], ["material", "+100.0", "+100.0"])
        self.assertEqual(rows[1][0], "king_attack")
        self.assertEqual(rows[1][2:5], [typeset("-80.0"), "0.0", typeset("-40.0")])
        self.assertEqual(sorted(row[0] for row in rows), sorted(TERMS))
        self.assertEqual(len(list(root.iter(SVG + "svg"))), 1)
        self.assertIn("prefers-color-scheme: dark", text)
        # Nothing is loaded, and nothing has to run.
        self.assertNotRegex(text, r"<script|<link|<img|src=|href=|url\(|@import")


class TerminalTest(unittest.TestCase):
    def rows(self, style, show_all=False, drawn=None):
        position, evaluation = drawn or known()
        text = terminal.explain(evaluation, position, style, show_all)
        return text.splitlines(), [line for line in text.splitlines() if line[:1].islower()]

    def test_order_and_sides(self):
        _, rows = self.rows(WIDE)
        self.assertEqual(
            [row.split()[0] for row in rows[:4]], ["material", "king_attack", "passed_pawns", "sum"]
        )
        material, attack, passed = (row.partition("│") for row in rows[:3])
        self.assertNotIn("█", material[0])
        self.assertNotIn("█", attack[2])
        self.assertEqual(len(material[0]), len(attack[0]))
        self.assertGreater(material[2].count("█"), attack[0].count("█"))
        self.assertGreater(attack[0].count("█"), passed[2].count("█"))

    def test_the_width_is_kept(self):
        for width in (48, 60, 80, 100, 140):
            for signs in (terminal.BLOCKS, terminal.PLAIN):
                lines, _ = self.rows(terminal.Style(width, signs, False), True)
                self.assertLessEqual(max(map(len, lines)), width)

    def test_both_halves_are_shown_where_there_is_room(self):
        for width, figures in ((79, 1), (80, 3), (100, 3)):
            _, rows = self.rows(terminal.Style(width, terminal.BLOCKS, False))
            found = re.findall(r"[+-]?[0-9]+\.[0-9]{2}", rows[0])
            self.assertEqual(len(found), figures, width)

    def test_plain_signs(self):
        lines, rows = self.rows(PLAIN)
        self.assertTrue("\n".join(lines).isascii())
        self.assertIn("|####", rows[0])
        self.assertIn("####|", rows[1])

    def test_all_terms_are_named_or_drawn(self):
        lines, _ = self.rows(WIDE)
        self.assertEqual(len([line for line in lines if "│" in line]), 3)
        text = "\n".join(lines)
        for name in TERMS:
            self.assertEqual(len(re.findall(rf"\b{name}\b", text)), 1, name)
        _, rows = self.rows(WIDE, True)
        names = [row.split()[0] for row in rows if "│" in row]
        self.assertEqual(names[0], "material")
        self.assertEqual(sorted(names), sorted(TERMS))

    def test_colour(self):
        style = terminal.Style(100, terminal.BLOCKS, True)
        coloured = "\n".join(self.rows(style)[0])
        self.assertIn(terminal.BLUE, coloured)
        self.assertIn(terminal.ORANGE, coloured)
        plain = "\n".join(self.rows(WIDE)[0])
        self.assertNotIn("\x1b", plain)
        self.assertEqual(re.sub("\x1b\\[[0-9]*m", "", coloured), plain)

    def test_the_stream_decides(self):
        for encoding, signs in (("utf-8", terminal.BLOCKS), ("ascii", terminal.PLAIN)):
            stream = io.TextIOWrapper(io.BytesIO(), encoding=encoding)
            style = terminal.Style.of(stream, False)
            self.assertEqual(style.signs, signs)
            self.assertFalse(style.colour)
            self.assertEqual(terminal.Style.of(stream, True).signs, terminal.PLAIN)


class FigureTest(unittest.TestCase):
    def test_signs(self):
        self.assertEqual(
            [signed(n) for n in (1.234, -1.236, 0, -0.001, 0.004)],
            ["+1.23", "-1.24", "0.00", "0.00", "0.00"],
        )
        self.assertEqual([signed(n, 0) for n in (14, -3, 0)], ["+14", "-3", "0"])

    def test_reach(self):
        shares = [share_of_reach(pawns, 10) for pawns in (-1000, -10, -1, 0, 0.5, 1, 10, 11)]
        self.assertEqual(shares, sorted(shares))
        self.assertEqual((shares[0], shares[3], shares[-1]), (-1, 0, 1))
        self.assertEqual(shares[2], -shares[5])


if __name__ == "__main__":
    unittest.main()
