#!/usr/bin/env python3
"""Runs scripts/check-layers.py on small trees, so that the layer check is seen to fail."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

CHECKER = Path(__file__).resolve().parents[2] / "scripts" / "check-layers.py"


class CheckLayersTest(unittest.TestCase):
    def run_on(self, files):
        with tempfile.TemporaryDirectory() as folder:
            root = Path(folder)
            (root / "src").mkdir()
            for name, text in files.items():
                (root / name).parent.mkdir(parents=True, exist_ok=True)
                (root / name).write_text(text)
            result = subprocess.run([sys.executable, str(CHECKER), str(root)],
                                    capture_output=True, text=True)
        return result.returncode, result.stdout + result.stderr

    def test_includes_down_and_across_the_layers_pass(self):
        code, output = self.run_on({
            "src/common/Date.h": "#pragma once\n",
            "src/measurement/Level.h": '#include "common/Date.h"\n#include <QString>\n',
            "src/measurement/Level.cpp": '#include "Level.h"\n',
            "src/model/Meter.h": '#include "qlab/Cue.h"\n#include "measurement/Level.h"\n',
            "src/qlab/Cue.h": "#pragma once\n",
            "src/qlab/client/Client.h": '#include "audio/Input.h"\n#include <QTcpSocket>\n',
            "src/audio/Input.h": "#include <QAudioSource>\n",
            "src/views/Panel.h": '#include "station/Station.h"\n#include <QColor>\n',
            "src/station/Station.h": '#include "audio/Input.h"\n',
            "src/app/main.cpp": '#include "views/Panel.h"\n#include "moc_main.cpp"\n',
            "tools/tone/main.cpp": '#include "tone/Options.h"\n#include "station/Station.h"\n',
            "tools/tone/Options.h": "#pragma once\n",
        })
        self.assertEqual(code, 0, output)

    def test_an_upward_include_fails_with_its_place_and_both_layers(self):
        code, output = self.run_on({
            "src/measurement/Level.h": '#pragma once\n#include "views/Panel.h"\n',
            "src/views/Panel.h": "#pragma once\n",
        })
        self.assertEqual(code, 1, output)
        self.assertIn('src/measurement/Level.h:2: "views/Panel.h" runs up the layers: '
                      "src/measurement (rank 0, pure logic) includes src/views (rank 3, views)",
                      output)

    def test_the_longest_folder_decides_the_layer(self):
        code, output = self.run_on({
            "src/qlab/Cue.h": '#include "qlab/client/Client.h"\n',
            "src/qlab/client/Client.h": "#pragma once\n",
        })
        self.assertEqual(code, 1, output)
        self.assertIn("src/qlab (rank 0, pure logic) includes src/qlab/client (rank 1, drivers)",
                      output)

    def test_a_subfolder_takes_its_parents_layer(self):
        code, output = self.run_on({
            "src/model/sessions/Store.cpp": '#include "audio/Input.h"\n',
            "src/audio/Input.h": "#pragma once\n",
        })
        self.assertEqual(code, 1, output)
        self.assertIn("src/model/sessions (as src/model, rank 0, pure logic)", output)

    def test_gui_network_and_multimedia_headers_are_refused_in_pure_logic(self):
        code, output = self.run_on({
            "src/common/A.h": "#include <QTcpSocket>\n#include <QString>\n",
            "src/common/B.h": "#include <QtGui/QColor>\n#include <QtCore/QObject>\n",
            "src/sessions/C.h": "#include <QAudioFormat>\n#include <QQuickItem>\n",
            "src/settings/D.h": "#include <QGuiApplication>\n#include <QtQml/qqml.h>\n",
        })
        self.assertEqual(code, 1, output)
        for expected in ["src/common/A.h:1: <QTcpSocket> is QtNetwork",
                         "src/common/B.h:1: <QtGui/QColor> is QtGui",
                         "src/sessions/C.h:1: <QAudioFormat> is QtMultimedia",
                         "src/sessions/C.h:2: <QQuickItem> is QtQuick",
                         "src/settings/D.h:1: <QGuiApplication> is QtGui",
                         "src/settings/D.h:2: <QtQml/qqml.h> is QtQml"]:
            self.assertIn(expected, output)
        self.assertNotIn("QString", output)
        self.assertNotIn("QObject", output)

    def test_files_and_processes_are_refused_in_pure_logic_but_not_in_drivers(self):
        code, output = self.run_on({
            "src/sessions/Archive.cpp": "#include <QSaveFile>\n#include <QSettings>\n",
            "src/model/Meter.cpp": "#include <QDir>\n#include <QStandardPaths>\n",
            "src/recording/Disk.cpp": "#include <QSaveFile>\n#include <QFile>\n",
        })
        self.assertEqual(code, 1, output)
        self.assertIn("src/sessions/Archive.cpp:1: <QSaveFile> is disk or process I/O", output)
        self.assertIn("src/model/Meter.cpp:1: <QDir> is disk or process I/O", output)
        self.assertNotIn("QSettings", output)
        self.assertNotIn("QStandardPaths", output)
        self.assertNotIn("src/recording", output)

    def test_a_folder_missing_from_the_table_is_an_error(self):
        code, output = self.run_on({"src/intercom/Link.h": "#pragma once\n"})
        self.assertEqual(code, 2, output)
        self.assertIn("src/intercom has no layer", output)

    def test_an_include_into_a_folder_missing_from_the_table_is_an_error(self):
        code, output = self.run_on({
            "src/app/main.cpp": '#include "intercom/Link.h"\n',
            "src/intercom/README.md": "Not code.\n",
        })
        self.assertEqual(code, 2, output)
        self.assertIn("src/intercom has no layer (seen at src/app/main.cpp:1)", output)


if __name__ == "__main__":
    unittest.main()
