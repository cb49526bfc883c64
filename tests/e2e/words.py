"""What is written while the program runs, and whose words the stories take it for."""

import contextlib
import io

import harness


class Words(harness.Story):
    def environment(self):
        return super().environment() | {"QT_LOGGING_RULES": "qt.qpa.screen=true"}

    def own_words(self, output):
        with contextlib.redirect_stderr(io.StringIO()) as passed_over:
            return harness.own_words(output), passed_over.getvalue()

    def shouldPassOverWhatPlatformPluginsSay(self):
        with self.running() as program:
            program.quit()
            program.wait_for_end()
            own, others = self.own_words(program.output())
            self.assertEqual(own, "")
            self.assertIn("[qt.qpa.screen] ", others)

    def shouldPassOverAMessageOfSeveralLines(self):
        self.assertEqual(self.own_words("[qt.accessibility.atspi] One\n[two] [end]\n")[0], "")

    def shouldHearWhatTheProgramSays(self):
        said = ("[default] qt.qpa.wayland: no [end]\n"
                "[qt.qml.binding] A loop\nof two lines [end]\n"
                "Without Qt\n")
        library = "[qt.qpa.wayland] unknown keymap format: 0 [end]\n"
        self.assertEqual(self.own_words(library + said + library)[0], said)


if __name__ == "__main__":
    harness.main()
