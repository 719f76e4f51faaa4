#!/usr/bin/env python3
"""Shows that each rule of layering.py fires, and that it leaves a clean tree alone."""

import os
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True  # the checkout stays as it is
import layering  # noqa: E402

SCRIPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "layering.py")

CLEAN_TREE = {
    "app/main.cpp": '#include "services/qt/toolkit.h"\n#include "app/event_loop.h"\n',
    "app/event_loop.h": '#pragma once\n#include "files/list.h"\n#include "settings/start.h"\n'
    '#include "export/csv.h"\n#include "charts/series.h"\n#include "device/card.h"\n',
    "files/list.h": '#pragma once\n#include "charts/series.h"\n#include "services/text.h"\n',
    "settings/start.h": '#pragma once\n#include "charts/series.h"\n#include "device/card.h"\n',
    "export/csv.h": '#pragma once\n#include "charts/series.h"\n#include "device/card.h"\n',
    "charts/series.h": '// Comment first.\n#pragma once\n#include <vector>\n#include "device/card.h"\n'
    '#include "charts/catalogue.h"\n',
    "charts/catalogue.h": "#pragma once\nextern int state;\n",
    "device/card.h": '#pragma once\n#include "services/text.h"\n',
    "services/text.h": "#pragma once\n#include <queue>\n#include <string>\n",
    "services/qt/toolkit.h": '#pragma once\n#include <QWidget>\n#include <QtGui/QImage>\n'
    '#include <qpa/qplatformwindow.h>\n#include "services/text.h"\n',
    "services/qt/toolkit.cpp": '#include "services/qt/toolkit.h"\n',
    "tools/demo_card.cpp": '#include "charts/series.h"\n#include "export/csv.h"\n',
    "tests/charts/series_test.cpp": '#include "near.h"\n#include <QTest>\nextern int anything;\n',
    "benchmarks/draw.cpp": '#include "app/event_loop.h"\nextern int anything;\n',
    "build/release/generated.cpp": "extern int anything;\n",
    "docs/formats.md": "extern\n",
}


def run(*arguments):
    done = subprocess.run(
        [sys.executable, "-B", SCRIPT, *arguments], capture_output=True, text=True, check=False
    )
    return done.returncode, done.stdout


class LayeringTest(unittest.TestCase):
    def setUp(self):
        # A blank and an umlaut, as a user's directories have them.
        holder = tempfile.TemporaryDirectory(suffix=" Räder")
        self.addCleanup(holder.cleanup)
        self.root = holder.name

    def write(self, tree):
        for file, text in tree.items():
            path = os.path.join(self.root, file)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, "wb") as stream:
                stream.write(text if isinstance(text, bytes) else text.encode("utf-8"))

    def findings_of(self, file, text):
        """The findings of a clean tree in which this one file is another."""
        self.write({**CLEAN_TREE, file: text})
        return layering.findings(self.root)

    def assert_one(self, file, text, line, what):
        found = self.findings_of(file, text)
        self.assertEqual(len(found), 1, found)
        self.assertTrue(found[0].startswith(f"{file}:{line}: "), found)
        self.assertIn(what, found[0])

    def assert_none(self, file, text):
        self.assertEqual(self.findings_of(file, text), [])

    def test_a_clean_tree_passes(self):
        self.write(CLEAN_TREE)
        self.assertEqual(run(self.root), (0, ""))

    def test_a_finding_is_one_line_and_exit_code_1(self):
        self.write({**CLEAN_TREE, "device/card.cpp": '\n#include "charts/series.h"\n'})
        code, output = run(self.root)
        self.assertEqual(code, 1)
        self.assertEqual(
            output, 'device/card.cpp:2: "charts/series.h": device does not include charts\n'
        )

    def test_an_empty_tree_fails(self):
        self.assertEqual(run(self.root)[0], 1)

    def test_a_tree_of_tests_alone_fails(self):
        self.write({"tests/a_test.cpp": "", "build/a.cpp": ""})
        self.assertEqual(run(self.root)[0], 1)

    def test_a_wrong_call_fails(self):
        self.assertEqual(run()[0], 2)
        self.assertEqual(run(os.path.join(self.root, "nowhere"))[0], 2)

    def test_only_what_lies_below_may_be_included(self):
        services = "services services/text services/disk services/raster"
        charts = f"{services} device charts charts/strips charts/marks charts/values"
        may = {
            "services/text": "",
            "services/raster": "",
            "services/disk": "services/text",
            "services/disk/posix": "services/disk services/text",
            "services": "services/text services/raster",
            "device": services,
            "charts/values": f"{services} device",
            "charts/marks": f"{services} device charts/values",
            "charts/strips": f"{services} device charts/values charts/marks",
            "charts": charts,
            "settings": charts,
            "files": charts,
            "export": charts,
            "app": f"{charts} settings files export",
            "tools": f"{charts} settings files export",
        }
        for layer in may:
            for target in may:
                allowed = target == layer or target in may[layer].split()
                with self.subTest(layer=layer, target=target):
                    found = layering.file_findings(
                        f"{layer}/a.cpp", f'#include "{target}/b.h"\n'.encode()
                    )
                    self.assertEqual(len(found), 0 if allowed else 1, found)

    def test_the_toolkit_adapter_includes_services_and_itself_alone(self):
        for target, count in [("services", 0), ("services/qt", 0), ("device", 1), ("app", 1)]:
            with self.subTest(target=target):
                found = layering.file_findings(
                    "services/qt/a.cpp", f'#include "{target}/b.h"\n'.encode()
                )
                self.assertEqual(len(found), count, found)

    def test_only_main_includes_the_toolkit_adapter(self):
        for file in ["app/startup.cpp", "services/text.cpp", "charts/a.cpp", "tools/main.cpp"]:
            with self.subTest(file=file):
                found = layering.file_findings(file, b'#include "services/qt/toolkit.h"\n')
                self.assertEqual(len(found), 1, found)

    def test_qt_is_included_by_its_adapter_alone(self):
        for spelled in [
            "<QString>", "<Qt>", "<QtCore>", "<QtCore/QString>", "<QtGui/qpa/qplatformwindow.h>",
            "<qpa/qplatformwindow.h>", "<private/qwidget_p.h>", "<qstring.h>", '"qwidget.h"',
            '"QWidget"',
        ]:
            for file, count in [("app/main.cpp", 1), ("services/a.cpp", 1), ("services/qt/a.cpp", 0)]:
                with self.subTest(spelled=spelled, file=file):
                    found = layering.file_findings(file, f"#include {spelled}\n".encode())
                    self.assertEqual(len(found), count, found)

    def test_headers_with_a_q_are_not_qt(self):
        self.assert_none("services/a.cpp", "#include <queue>\n#include <net/quota.h2>\n")

    def test_the_systems_headers_are_included_by_the_folder_of_their_system_alone(self):
        for included in ["fcntl.h", "unistd.h", "sys/stat.h", "dirent.h", "signal.h", "linux/magic.h"]:
            for folder, count in [
                ("services/disk/posix", 0), ("services/disk", 1), ("services", 1),
                ("services/qt", 1), ("device", 1), ("app", 1),
            ]:
                with self.subTest(included=included, folder=folder):
                    found = layering.file_findings(
                        f"{folder}/a.cpp", f"#include <{included}>\n".encode()
                    )
                    self.assertEqual(len(found), count, found)

    def test_a_folder_that_is_no_layer_belongs_to_the_one_around_it(self):
        self.assert_none("device/cards/a.cpp", '#include "services/disk/a.h"\n#include "device/b.h"\n')
        self.assert_one("device/cards/a.cpp", '#include "charts/a.h"\n', 1, "device does not include")

    def test_our_own_headers_may_begin_with_a_q(self):
        self.assert_none("services/a.cpp", '#include "services/queue.h"\n')

    def test_includes_are_rooted(self):
        for included in [
            "text.h", "../services/text.h", "./services/text.h", "services/../charts/series.h",
            "services/qt/../text.h", "services//text.h", "/services/text.h", "qt/toolkit.h",
            "tests/stand_ins/stand_ins.h",
        ]:
            with self.subTest(included=included):
                self.assert_one("app/a.cpp", f'\n#include "{included}"\n', 2, included)

    def test_our_own_headers_are_not_smuggled_in_brackets(self):
        self.assert_one("device/a.cpp", "#include <charts/series.h>\n", 1, "quotes")

    def test_an_include_through_a_macro_is_refused(self):
        self.assert_one("device/a.cpp", "#include HEADER\n", 1, "name its file")

    def test_odd_spelling_is_still_an_include(self):
        for text in [
            '  #  include  "charts/series.h"\n',
            '#include"charts/series.h"\n',
            '/* why */ #include "charts/series.h"\n',
            '#include "charts/series.h"\r\n',
            '#include "charts/series.h" // why\n',
            'int a = 1\'000;  // don\'t\n#include "charts/series.h"\n',
        ]:
            with self.subTest(text=text):
                found = layering.file_findings("device/a.cpp", text.encode())
                self.assertEqual(len(found), 1, found)

    def test_extern_in_a_source_file_is_refused(self):
        for text in [
            "extern int a;\n",
            "int extern a;\n",
            "namespace n { extern int a; }\n",
            "[[maybe_unused]] extern int a;\n",
            'extern "C" int a();\n',
            "int b = 1'000; extern int a;  // 'tis\n",
            'const char* c = R"(")"; extern int a;\n',
        ]:
            with self.subTest(text=text):
                found = layering.file_findings("device/a.cpp", text.encode())
                self.assertEqual([line for line, _ in found], [1], found)

    def test_words_in_comments_and_literals_are_no_code(self):
        for text in [
            "// extern int a;\n",
            "// goes on \\\nextern int a;\n",
            "/* extern\n extern */\n",
            '// #include "charts/series.h"\n',
            '/*\n#include "charts/series.h"\n*/\n',
            'const char* a = "extern";\n',
            'const char* a = "\\"extern";\n',
            'const char* a = R"x(\n#include "charts/series.h"\nextern )" )x";\n',
            "char a = '\"'; int external; char b = '\"';\n",
        ]:
            with self.subTest(text=text):
                found = layering.file_findings("device/a.cpp", text.encode())
                self.assertEqual(found, [])

    def test_a_header_needs_pragma_once(self):
        self.assert_one("device/a.h", "int f();\n", 1, "#pragma once")
        self.assert_one("device/a.h", "// #pragma once\n", 1, "#pragma once")

    def test_a_source_file_needs_no_pragma_once(self):
        self.assert_none("device/a.cpp", "int f();\n")

    def test_a_file_outside_the_layers_is_refused(self):
        self.assert_one("misc/a.cpp", "", 1, "outside the layers")
        os.remove(os.path.join(self.root, "misc/a.cpp"))
        self.assert_one("a.h", "#pragma once\n", 1, "outside the layers")

    def test_a_file_that_is_not_utf8_is_refused(self):
        self.assert_one("device/a.cpp", b"\n// \xfcber\n", 2, "UTF-8")

    def test_other_build_directories_are_left_out(self):
        self.write({"out/CMakeCache.txt": ""})
        self.assert_none("out/generated.cpp", "extern int a;\n")

    def test_a_build_folder_inside_a_layer_is_read(self):
        self.assert_one("device/build/a.cpp", "extern int a;\n", 1, "extern")

    def test_every_finding_is_reported_in_order(self):
        found = self.findings_of(
            "device/a.h", '#include "app/event_loop.h"\n\n#include "text.h"\n'
        )
        self.assertEqual([line.split(":")[1] for line in found], ["1", "1", "3"])


if __name__ == "__main__":
    unittest.main()
