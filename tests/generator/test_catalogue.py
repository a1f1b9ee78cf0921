"""The generator refuses bad catalogues, naming the file and line; it
counts call shapes as the host counts them; the catalogue's README shows the
figures the catalogue has."""
import re
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
from tvgen import model as model_mod, stats  # noqa: E402
from tvgen.model import answers, catalogue  # noqa: E402

IID_A = "f38c5248-f223-4c72-95cb-a2319972e1cd"
IID_B = "9CDB6796-0043-49DD-A3A8-24C069F86010"


def load(text, model=""):
    with tempfile.TemporaryDirectory() as d:
        Path(d, "application.api").write_text(text)
        if model:
            Path(d, "model.api").write_text(model)
        return catalogue.load(d, ["application", "model"])


# (catalogue text, what the refusal says, the line it names)
REFUSED = [
    (f"interface IA {IID_A}\ninterface IA {IID_B}\n", "declared twice", 2),
    (f"interface IA {IID_A}\n  int GetX()\n  int GetX()\n", "declared twice", 3),
    ("interface IA f38c5248-f223-4c72-95cb-a2319972e1c\n", "expected 'interface Name IID", 1),
    ("interface IA f38c5248f223-4c72-95cb-a2319972e1cdx\n", "expected 'interface Name IID", 1),
    (f"interface IA {IID_A}\n  double GetX()\n  void SetX(int value)\n", "takes int but GetX returns double", 3),
    (f"interface IA {IID_A}\n  bool IsOn(int i)\n  void SetOn(bool value)\n", "arguments before its value", 3),
    (f"interface IA {IID_A}\n  DoubleVector GetEdgePoints(int i)\n",
     "'bool GetEdgePoints(int i, inout DoubleVector edgePoints)'", 2),
    (f"interface IA {IID_A}\n  StringVector GetNames(text filter)\n", "inout StringVector names", 2),
    (f"interface IA {IID_A}\n  IMissing GetOther()\n", "IMissing is not declared", 2),
    (f"interface IA {IID_A}\n  void F(out text t)\n", "'out' applies", 2),
    (f"interface IA {IID_A}\n  void F(inout Uint8Vector v)\n", "'inout' applies", 2),
    (f"interface IA {IID_A}\n  void F(ObjectReferenceVector v)\n", "needs its element interface", 2),
]


class Refusals(unittest.TestCase):
    def test_each_mistake_is_refused_naming_its_line(self):
        for text, fragment, line in REFUSED:
            with self.subTest(text=text):
                with self.assertRaises(catalogue.CatalogueError) as e:
                    load(text)
                self.assertIn(fragment, str(e.exception))
                self.assertIn(f"application.api:{line}", str(e.exception))


class AnswerFacts(unittest.TestCase):
    def test_each_mistake_in_the_answers_file_is_refused_naming_its_line(self):
        for text, fragment in [("IA answers IB\n", "expected 'Subject answers Interface  # why'"),
                               ("IA answers IC  # why\n", "no interface IC"),
                               ("IA_GetB answers IA  # why\n", "returns IB, which says its interface already"),
                               ("IA_Nothing answers IB  # why\n", "neither an interface nor an export"),
                               ("IA answers IB  # why\nIA answers IB  # again\n", "IA answers IB twice")]:
            with self.subTest(text=text), tempfile.TemporaryDirectory() as d:
                Path(d, "application.api").write_text(f"interface IA {IID_A}\n  IB GetB()\ninterface IB {IID_B}\n")
                Path(d, answers.FILE).write_text(text)
                with self.assertRaises(catalogue.CatalogueError) as e:
                    answers.load(d, catalogue.load(d, ["application"]))
                self.assertIn(fragment, str(e.exception))
                self.assertIn(f"{answers.FILE}:{text.count(chr(10))}", str(e.exception))


class Figures(unittest.TestCase):
    def test_shapes_are_counted_per_function_and_per_element_width(self):
        cat = load(f"interface IA rooted application\n"
                   "  bool F(Int32Vector a, EnumVector b, text c, text d)\n"
                   "  bool G(inout DoubleVector a, inout NumericIdVector b)\n"
                   "  text H(ObjectReferenceVectorVector<IB> a, ObjectReferenceVector<IB> b)\n",
                   model=f"interface IB {IID_A}\n  ColorVector GetColors()\n")
        c = stats.shape_counts(cat.ops())
        self.assertEqual((c["4-byte vector argument"], c["Int32Vector argument"], c["4-byte vector result"]), (1, 1, 1))
        self.assertEqual((c["8-byte vector refilled"], c["DoubleVector refilled"]), (1, 1))
        self.assertEqual((c["text argument"], c["text result"], c["application-rooted"]), (1, 1, 3))
        self.assertEqual(c["ObjectReferenceVector<IB> argument"], 1)

    def test_the_readme_shows_the_catalogues_figures(self):
        model = model_mod.load(ROOT / "catalogue")
        readme = (ROOT / "catalogue" / "README.md").read_text(encoding="utf-8")
        self.assertTrue(stats.table(model) in readme, "run tools/generate.py --stats and update the README")
        calibration = readme.split("## Calibration", 1)[1]
        rows = re.findall(r"^\| (.+?) \| (\S+) \| (\d+) \| [^|]* \|$", calibration, re.M)
        self.assertEqual(rows, stats.calibration_rows(model))
        self.assertEqual(stats.columns(model)[-1][1]["operations"], 9447)


if __name__ == "__main__":
    unittest.main()
