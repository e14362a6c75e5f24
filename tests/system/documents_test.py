# SPDX-License-Identifier: MIT
"""The check of the documents finds dead links, missing paths, wrong names, members and arrows."""
import pathlib
import tempfile
import unittest

import documents

SCHEDULER = """    [id(1), propget, helpstring("The folder")]
    HRESULT AppPath([out, retval] BSTR *pVal);
    [id(2), helpstring("Shuffles; saves")]
    HRESULT ShuffleCategories(
        [in] IDispatch *colCats, [in, defaultvalue(0)] VARIANT_BOOL bConfirmFirst);
"""
COLLECTION = "[id(-4), propget, restricted] HRESULT _NewEnum([out, retval] IUnknown **ppEnum);"
SHUFFLE = "| 2 | `ShuffleCategories(colCats, [bConfirmFirst])` | Shuffles; saves. Then more |\n"
GUIDE = "| `AppPath` | The folder |\n" + SHUFFLE


BUILD = """ravlo_layer(model    FOLDER model LIBRARIES libcsv)
ravlo_layer(rotation FOLDER rotation DEPENDS model)
"""


class Documents(unittest.TestCase):
    def faults(self, readme="", guide=GUIDE, architecture=None, scheduler=SCHEDULER, shown="![A window](window.png)"):
        with tempfile.TemporaryDirectory() as folder:
            tree = pathlib.Path(folder)
            files = {"README.md": readme, "docs/guide-host-developer.md": guide,
                     "rotation/Selection.cpp": "void Walk::SendToBack();", "docs/words.md": "# What is a *level*?\n",
                     "comkit/RavloScheduler.idl": scheduler, "comkit/RavloBase.idl": "",
                     "comkit/KorvaCollection.idl": COLLECTION, "docs/index.md": shown,
                     "build/old.md": "[gone](gone.md)", "docs/window.png": ""}
            if architecture:
                files |= {"docs/ARCHITECTURE.md": architecture, "CMakeLists.txt": BUILD}
            for name, text in files.items():
                (tree / name).parent.mkdir(exist_ok=True)
                (tree / name).write_text(text, encoding="utf-8")
            return documents.check(tree)[0]

    def test_links_to_pages_folders_headings_and_the_web_are_followed(self):
        links = "[a](docs/words.md) [b](docs) [c](docs/words.md#what-is-a-level) [d](https://x/y)"
        self.assertEqual(self.faults(links), [])

    def test_a_link_to_no_file_or_heading_is_refused(self):
        self.assertEqual(self.faults("[a](docs/gone.md) [b](docs/words.md#gone)"),
                         ["README.md: no file for the link docs/gone.md",
                          "README.md: no heading for the link docs/words.md#gone",
                          "README.md: no file docs/gone.md"])

    def test_a_path_may_leave_out_the_extension(self):
        text = "See `rotation/Selection`, rotation/Selection.cpp, build/bin/x and a/rotation/x."
        self.assertEqual(self.faults(text), [])

    def test_a_path_to_no_file_is_refused(self):
        self.assertEqual(self.faults("    run rotation/Gone.cpp now"), ["README.md: no file rotation/Gone.cpp"])

    def test_a_name_that_is_not_in_the_code_is_refused(self):
        self.assertEqual(self.faults("`Walk::SendToBack`, `SendToBack`, `vbTab and CrLf`, `build`"), [])
        self.assertEqual(self.faults("`Walk::SendToFront`"), ["README.md: no SendToFront in the code"])

    def test_a_picture_that_no_page_shows_is_refused(self):
        self.assertEqual(self.faults(shown=""), ["docs/window.png: no page shows it"])

    def test_members_are_described_with_their_parameters(self):
        self.assertEqual(self.faults(), [])
        self.assertEqual(self.faults(guide=GUIDE.replace("`AppPath`", "`build`").replace(", [bConfirmFirst]", "")),
                         ["docs/guide-host-developer.md: AppPath is not described",
                          "docs/guide-host-developer.md: ShuffleCategories(colCats) has other parameters: "
                          "[['colCats', '[bConfirmFirst]']]",
                          "docs/guide-host-developer.md: AppPath has no row that begins with its help string: The folder"])

    def test_a_row_begins_with_the_help_string_of_its_member(self):
        guide = "docs/guide-host-developer.md: "
        self.assertEqual(self.faults(guide="| `AppPath` | The folders |\n" + SHUFFLE),
                         [guide + "AppPath has no row that begins with its help string: The folder",
                          guide + "the row of AppPath begins with no help string: The folders"])
        self.assertEqual(self.faults(guide=GUIDE, scheduler=SCHEDULER.replace(', helpstring("The folder")', "")),
                         [guide + "AppPath has no help string",
                          guide + "the row of AppPath begins with no help string: The folder"])

    def test_the_table_of_the_layers_has_every_arrow(self):
        rows = "| `model` | cuts | libcsv |\n| `rotation` | picks | `model` |\n"
        self.assertEqual(self.faults(architecture=rows), [])
        self.assertEqual(self.faults(architecture="| `model` | cuts | `rotation` |\n"),
                         ["docs/ARCHITECTURE.md: model may include from []",
                          "docs/ARCHITECTURE.md: rotation may include from ['model']"])


if __name__ == "__main__":
    unittest.main()
