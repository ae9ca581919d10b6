"""A virtual display with a window manager, and the program on it, driven by keyboard as a user would."""
import glob
import os
import resource
import signal
import subprocess
import time


class Lost(Exception):
    """The screen never came to show what was waited for."""


def wait_for(what, condition, seconds=20):
    end = time.monotonic() + seconds
    while True:
        found = condition()
        if found:
            return found
        if time.monotonic() > end:
            raise Lost(f"waited {seconds} s for {what}")
        time.sleep(0.001)


# A kernel without these figures has coarse ones.
FINE_TIMES = os.path.exists("/proc/self/schedstat")


def busy(processes):
    """Nanoseconds that they have run or waited for a processor so far; none when one of them waits for a disk."""
    try:
        times = [time_of(thread) for process in processes for thread in glob.glob(f"/proc/{process}/task/*")]
    except (FileNotFoundError, ProcessLookupError):
        return None  # one has just ended
    return None if None in times else sum(times)


def time_of(thread):
    with open(thread + "/stat") as status:
        fields = status.read().rpartition(")")[2].split()
    if fields[0] == "D":
        return None
    if not FINE_TIMES:
        return (int(fields[11]) + int(fields[12])) * 1_000_000_000 // os.sysconf("SC_CLK_TCK")
    with open(thread + "/schedstat") as times:
        return sum(int(each) for each in times.read().split()[:2])


class Display:
    """One display for all rounds, with a window manager or without; nobody else uses it."""

    def __init__(self, folder, managed=True):
        read, write = os.pipe()
        self._log = open(os.path.join(folder, "display.log"), "w")
        self._server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x1024x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[write], stdin=subprocess.DEVNULL, stdout=self._log, stderr=self._log, start_new_session=True)
        os.close(write)
        with os.fdopen(read) as number:
            self.name = ":" + number.readline().strip()
        if self.name == ":":
            raise Lost("no virtual display came up, see " + self._log.name)
        self.environment = dict(os.environ, DISPLAY=self.name, QT_QPA_PLATFORM="xcb", LC_ALL="C.UTF-8")
        self.environment.pop("WAYLAND_DISPLAY", None)
        self._manager = None
        if managed:
            self._manager = subprocess.Popen(["openbox", "--sm-disable"], env=self.environment,
                                             stdin=subprocess.DEVNULL, stdout=self._log, stderr=self._log,
                                             start_new_session=True)
            wait_for("the window manager", lambda: self._xdotool("get_num_desktops").returncode == 0)

    def _xdotool(self, *arguments):
        return subprocess.run(["xdotool", *arguments], env=self.environment, capture_output=True, text=True)

    def close(self):
        for process in filter(None, (self._manager, self._server)):
            process.terminate()
            process.wait()
        self._log.close()

    def processes(self):
        return [self._server.pid, self._manager.pid]

    def active_title(self):
        """The title of the window that has the keyboard; empty when none has."""
        return self._xdotool("getwindowfocus", "getwindowname").stdout.strip()

    def active_size(self):
        """Width and height of the window that has the keyboard; none when none has."""
        told = self._xdotool("getwindowfocus", "getwindowgeometry", "--shell").stdout
        facts = dict(line.split("=", 1) for line in told.splitlines() if "=" in line)
        return (int(facts["WIDTH"]), int(facts["HEIGHT"])) if "WIDTH" in facts else None

    def photograph(self, picture):
        subprocess.run(["import", "-window", "root", picture], env=self.environment, check=False)

    def press(self, *keys):
        self._xdotool("key", "--delay", "1", *keys).check_returncode()

    def type(self, text):
        self._xdotool("type", "--delay", "1", text).check_returncode()


class Program:
    """The program in an application folder of its own, started and not yet ended."""

    MENU = "Discaro"
    WIZARD = "Discaro - Scan a new CD-ROM"
    DELETION = "Discaro - Delete CD-ROM Entry"
    QUESTION = "Confim Deletion !!!"
    FAILURE = "Error during Scan"

    def __init__(self, display, folder, file_size_limit=None, by=()):
        """`by` is a command before the program's own, such as one that takes rights away."""
        self.display = display
        runtime = os.path.join(folder, "runtime")
        os.makedirs(runtime, mode=0o700, exist_ok=True)

        self._log = open(os.path.join(runtime, "program.log"), "w")

        def limit():
            if file_size_limit is not None:
                signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
                resource.setrlimit(resource.RLIMIT_FSIZE, (file_size_limit, resource.RLIM_INFINITY))

        self._process = subprocess.Popen(
            [*by, os.path.join(folder, "discaro")], cwd=runtime, preexec_fn=limit, start_new_session=True,
            env=dict(display.environment, XDG_RUNTIME_DIR=runtime, HOME=runtime, XDG_CONFIG_HOME=runtime),
            stdin=subprocess.DEVNULL, stdout=self._log, stderr=self._log)
        self.wait_for_start()

    def wait_for_start(self):
        self.wait_for_window(self.MENU)
        self.wait_until_idle()

    def lift_limit(self):
        resource.prlimit(self._process.pid, resource.RLIMIT_FSIZE, (resource.RLIM_INFINITY, resource.RLIM_INFINITY))

    def is_running(self):
        return self._process.poll() is None

    def kill(self):
        self._process.send_signal(signal.SIGKILL)
        return self._process.wait()

    def wait_for_end(self, seconds=30):
        """Returns the exit status."""
        return self._process.wait(seconds)

    def wait_for_window(self, title, seconds=30):
        def shown():
            if not self.is_running():
                raise Lost(f"the program ended with {self._process.returncode} before '{title}' came")
            return self.display.active_title() == title

        wait_for(f"the window '{title}', instead of '{self.display.active_title()}'", shown, seconds)

    def wait_until_idle(self, seconds=60):
        """Until it and the display have done next to nothing for some time: what a key has begun is done."""
        processes = [self._process.pid, *self.display.processes()]

        def rests():
            for _ in range(2):
                before = busy(processes)
                time.sleep(0.025)
                after = busy(processes)
                if before is None or after is None or after - before > 2_500_000:
                    return False
            return True

        wait_for("the program to rest", rests, seconds)

    def to_scan(self, image, name):
        """From the menu to the scanning screen, its start button in focus."""
        self.display.press("Return")
        self.wait_for_window(self.WIZARD)
        self.wait_until_idle()
        self.display.press("space")
        self.display.type(name)
        self.display.press("Tab", "Tab", "Tab", "space", "f")
        self.wait_for_window("Read a disc image")
        self.wait_until_idle()
        self.display.type(image)
        self.display.press("Return")
        self.wait_for_window(self.WIZARD)
        self.wait_until_idle()
        self.display.press("Tab", "Tab", "Tab", "space")
        self.wait_until_idle()
        self.display.press("Tab", "Tab", "Tab", "space")
        self.wait_until_idle()  # the quick scan
        for _ in range(2):  # apart, or they would look like one key held down
            self.display.press("space")
            self.wait_until_idle()

    def to_deletion(self, place):
        """From the menu to the question whether the disc at that place, from 0, shall go."""
        self.display.press("Down", "Return")
        self.wait_for_window(self.DELETION)
        self.wait_until_idle()
        if place:
            self.display.press(*["Down"] * place)
        self.display.press("alt+d")
        self.wait_for_window(self.QUESTION)
        self.wait_until_idle()

    def confirm(self):
        """The last key press: the scan or the deletion begins."""
        self.display.press("space")
