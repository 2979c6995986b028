"""The icon in the notification area: embedded in a panel, announced on the bus, and neither."""

import time
import unittest

from desktop_session import Desktop
from tallowin_harness import TestCase, wait_until

MAIN = "Tallowin 1"
SERVICES = ["_Port Sentry", "_Trojan Sentry", "_IdentD Server", "_Sync Time", "_Clear Log",
            "Save _Log File", "Remove _All Logs", "E_xit Tallowin"]


class TrayTest(TestCase):
    def setUp(self):
        super().setUp()
        self.home.set_up({}, Port_Sentry=1)
        self.desktop = Desktop(self)

    def wait_shown(self, title):
        return wait_until(lambda: self.desktop.windows(title), title)[0]

    def repeat_until(self, act, condition, what):
        """What comes while a window is not yet in its place may be lost."""
        act()
        acted = [time.monotonic()]

        def come_true():
            if condition():
                return True
            if time.monotonic() - acted[0] > 3:
                act()
                acted[0] = time.monotonic()
            return False

        wait_until(come_true, what)

    def close(self, title):
        """Boxes take no key before the keyboard has been at rest for a moment."""
        self.desktop.tell("xdotool", "windowfocus", "--sync", self.wait_shown(title))
        self.repeat_until(lambda: self.key("Return"),
                          lambda: not self.desktop.windows(title), f"the end of {title}")

    def wait_hidden(self):
        wait_until(self.hidden, "the hidden window")

    def wait_in_task_list(self):
        wait_until(self.in_task_list, "nothing but the entry in the task list")

    def minimise(self, done, what):
        """A window manager may be asked again while the program still answers its last change."""
        def ask():
            for window in self.desktop.windows(MAIN):
                self.desktop.tell("xdotool", "windowminimize", window)

        self.repeat_until(ask, done, what)

    def hidden(self):
        """In no way to be seen, as there is the icon."""
        return MAIN not in self.desktop.task_list()

    def in_task_list(self):
        return MAIN in self.desktop.task_list() and not self.desktop.windows(MAIN)

    def key(self, *names):
        self.desktop.tell("xdotool", "key", *names)

    def open_menu(self, icon):
        """A panel that is still placing the icon may lose a click."""
        self.repeat_until(lambda: self.desktop.click(icon, 3),
                          lambda: len(self.desktop.windows("tallowin")) > 1, "the menu")

    def press_in_menu(self, key, icons=1):
        """Menus have the same name as embedded icons."""
        wait_until(lambda: len(self.desktop.windows("tallowin")) > icons, "the menu")
        self.repeat_until(lambda: self.key(key),
                          lambda: len(self.desktop.windows("tallowin")) == icons,
                          "the end of the menu")

    def restore(self, icon):
        """On a busy machine two clicks may be too far apart, or be lost."""
        self.repeat_until(lambda: self.desktop.click(icon, 1, times=2),
                          lambda: self.desktop.windows(MAIN), MAIN)

    def test_embedded(self):
        self.desktop.panel()
        program = self.desktop.start()
        icon = wait_until(self.desktop.embedded_icon, "the icon")
        self.wait_hidden()

        self.open_menu(icon)
        self.press_in_menu("l")
        self.wait_shown("Tallowin")
        self.assertEqual(len(self.home.logs()), 1)
        self.assertEqual(self.desktop.task_list().count(MAIN), 0)
        self.close("Tallowin")

        self.restore(icon)
        self.minimise(self.hidden, "the hidden window")
        self.desktop.click(icon, 1)  # alone it does nothing
        self.open_menu(icon)
        self.press_in_menu("x")
        self.wait_shown("Are you sure?")
        self.assertEqual(self.desktop.windows(MAIN), [])

        program.terminate()
        self.assertEqual(program.wait(), 0)
        self.assertIsNone(self.desktop.embedded_icon())

    def test_no_way_back_behind_the_about_box(self):
        self.desktop.panel()
        self.desktop.start("-restored")
        icon = wait_until(self.desktop.embedded_icon, "the icon")
        main = self.wait_shown(MAIN)
        self.desktop.tell("xdotool", "windowfocus", "--sync", main)
        self.key("alt+h")
        self.press_in_menu("a")
        self.wait_shown("About Tallowin")
        self.minimise(self.hidden, "the hidden window")
        self.desktop.click(icon, 1, times=2)
        self.close("About Tallowin")
        self.assertEqual(self.desktop.windows(MAIN), [])
        self.restore(icon)

    def test_a_box_that_blocks_all_windows_leaves_the_icon_in_reach(self):
        self.desktop.panel()
        self.desktop.start("-restored")
        icon = wait_until(self.desktop.embedded_icon, "the icon")
        self.desktop.tell("xdotool", "windowfocus", "--sync", self.wait_shown(MAIN))
        self.key("alt+p")
        self.press_in_menu("o")
        self.wait_shown("Tallowin Options")
        self.open_menu(icon)
        self.press_in_menu("Escape")
        self.assertTrue(self.desktop.windows("Tallowin Options"))

    def test_announced(self):
        host = self.desktop.notifier_host()
        self.desktop.start()
        wait_until(lambda: host.icons() == ["tallowin"], "the icon")
        self.wait_hidden()
        self.assertLessEqual({"16", "22", "24", "32", "48", "64"}, set(host.ask("icon_sizes")))

        ticks = [1, 0, 0, 0, 0, 0, 0, 0]
        wait_until(lambda: host.ask("menu") == [
            f"{label} {tick}" for label, tick in zip(SERVICES, ticks)], "the menu")
        host.ask("choose", "_Port Sentry")
        wait_until(lambda: host.ask("menu")[0] == "_Port Sentry 0", "the tick gone")
        host.ask("choose", "Save _Log File")
        self.wait_shown("Tallowin")
        self.assertEqual(self.desktop.windows(MAIN), [])
        self.close("Tallowin")

        host.ask("press", "ContextMenu")
        self.press_in_menu("Escape", icons=0)
        host.ask("press", "Activate")
        host.ask("press", "Activate")
        self.wait_shown(MAIN)

    def test_without_a_panel_the_window_comes_back_each_time(self):
        self.desktop.start("-restored")
        main = self.wait_shown(MAIN)
        self.desktop.tell("xdotool", "windowactivate", "--sync", main)
        for _ in range(5):
            self.minimise(self.in_task_list, "nothing but the entry in the task list")
            self.desktop.tell("xdotool", "windowactivate", "--sync", main)
            time.sleep(0.3)  # for what would put it back
            self.assertTrue(self.desktop.windows(MAIN))

    def test_panels_come_and_go(self):
        self.desktop.start()
        self.wait_in_task_list()
        host = self.desktop.notifier_host()
        self.wait_hidden()
        wait_until(lambda: host.icons() == ["tallowin"], "the icon")
        host.ask("show_icons", "no")
        self.wait_in_task_list()
        host.ask("show_icons", "yes")
        self.wait_hidden()
        host.process.kill()
        self.wait_in_task_list()

    def test_a_panel_for_windows_comes_and_goes(self):
        self.desktop.start()
        self.wait_in_task_list()
        for _ in range(2):
            panel = self.desktop.panel()
            wait_until(self.desktop.embedded_icon, "the icon")
            self.wait_hidden()
            panel.terminate()
            self.wait_in_task_list()


if __name__ == "__main__":
    unittest.main()
