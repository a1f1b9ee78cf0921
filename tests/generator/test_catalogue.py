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
from tvgen.model import catalogue  # noqa: E402

IID_A = "f38c5248-f223-4c72-95cb-a2319972e1cd"
IID_B = "9CDB6796-0043-49DD-A3A8-24C069F86010"


def load(text, model=""):
    with tempfile.TemporaryDirectory() as d:
        Path(d, "application.api").write_text(text)
        if model:
            Path(d, "model.api").write_text(model)
        return catalogue.load(d, ["application", "model"])


class Refusals(unittest.TestCase):
    def refused(self, text, fragment, line):
        with self.assertRaises(catalogue.CatalogueError) as e:
            load(text)
        self.assertIn(fragment, str(e.exception))
        self.assertIn(f"application.api:{line}", str(e.exception))

    def test_duplicate_interface(self):
        self.refused(f"interface IA {IID_A}\ninterface IA {IID_B}\n", "declared twice", 2)

    def test_duplicate_operation(self):
        self.refused(f"interface IA {IID_A}\n  int GetX()\n  int GetX()\n", "declared twice", 3)

    def test_malformed_iid(self):
        self.refused("interface IA f38c5248-f223-4c72-95cb-a2319972e1c\n", "expected 'interface Name IID", 1)
        self.refused("interface IA f38c5248f223-4c72-95cb-a2319972e1cdx\n", "expected 'interface Name IID", 1)

    def test_setter_disagreeing_with_its_getter(self):
        self.refused(f"interface IA {IID_A}\n  double GetX()\n  void SetX(int value)\n", "takes int but GetX returns double", 3)
        self.refused(f"interface IA {IID_A}\n  bool IsOn(int i)\n  void SetOn(bool value)\n", "arguments before its value", 3)

    def test_list_getter_without_setter_returning_a_new_list(self):
        self.refused(f"interface IA {IID_A}\n  DoubleVector GetEdgePoints(int i)\n",
                     "'bool GetEdgePoints(int i, inout DoubleVector edgePoints)'", 2)
        self.refused(f"interface IA {IID_A}\n  StringVector GetNames(text filter)\n", "inout StringVector names", 2)

    def test_object_type_naming_no_interface(self):
        self.refused(f"interface IA {IID_A}\n  IMissing GetOther()\n", "IMissing is not declared", 2)

    def test_modifiers_only_where_they_mean_something(self):
        self.refused(f"interface IA {IID_A}\n  void F(out text t)\n", "'out' applies", 2)
        self.refused(f"interface IA {IID_A}\n  void F(inout Uint8Vector v)\n", "'inout' applies", 2)
        self.refused(f"interface IA {IID_A}\n  void F(ObjectReferenceVector v)\n", "needs its element interface", 2)


class Accepted(unittest.TestCase):
    def test_a_well_formed_catalogue_reads_with_case_kept_and_references_across_groups(self):
        cat = load(f"interface IA {IID_B}\n  IB GetB()\n  void SetB(IB value)\n"
                   "  void SetValues(int row, AttributeValueVector value)  # unlike its getter: by design\n"
                   "  StringVector GetValues(int row)\n"
                   "  DoubleVector GetPoints()\n  void SetPoints(DoubleVector value)\n",
                   model=f"interface IB {IID_A}\n")
        self.assertEqual(cat.interfaces["IA"].iid, IID_B)
        self.assertEqual([op.name for op in cat.interfaces["IA"].ops],
                         ["GetB", "SetB", "SetValues", "GetValues", "GetPoints", "SetPoints"])
        self.assertEqual(cat.interfaces["IB"].group, "model")


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
