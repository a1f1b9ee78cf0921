"""The public header in the build tree says beside a prototype whose result
the caller owns what to release it with, and says nothing beside others;
checked against a table written down here.

    test_header.py <build>/generated/include/tvAPIC.h
"""
import re
import sys
import unittest
from pathlib import Path

HEADER = Path(sys.argv.pop(1)) if len(sys.argv) > 1 else \
    Path(__file__).resolve().parents[2] / "build" / "generated" / "include" / "tvAPIC.h"

# export -> the comment that ends its prototype ('' for none)
COMMENTS = {
    "ITavraDocument_GetName": "/* release with free() */",
    "PropertyValue_ToString": "/* release with free() */",
    "IDocuments_Open": "/* release with IAPIObject_Release() */",
    "IAttribute_GetValues": "/* release with StringVector_Delete() */",
    "ILayerGroup_GetLayerStates": "/* release with BoolVector_Delete() */",
    "ITavraDocument2D_CopyObjects":
        "/* release each element with IAPIObject_Release(), then the vector with ObjectReferenceVector_Delete() */",
    "IProductDataManager_GetReferenceData":
        "/* release each element with PropertyValue_Delete(), then the vector with PropertyValueVector_Delete() */",
    "DoubleVector_Create": "/* release with DoubleVector_Delete() */",
    "PropertyValue_Create": "/* release with PropertyValue_Delete() */",
    "StringVector_Get": "",
    "ILineSegment_GetX1": "",
    "IAttribute_GetValue": "",
    "IAPIObject_AddRef": "",
    "IApplicationEvents_AddCreateDocumentHandler": "",
}


class ReleaseComments(unittest.TestCase):
    def test_each_owned_result_names_what_releases_it(self):
        text = HEADER.read_text(encoding="utf-8")
        for export, comment in COMMENTS.items():
            with self.subTest(export=export):
                line = re.search(rf"^TVAPIC_API .*\b{export}\(.*\);(.*)$", text, re.M)
                self.assertIsNotNone(line, export)
                self.assertEqual(line.group(1).strip(), comment)


if __name__ == "__main__":
    unittest.main()
