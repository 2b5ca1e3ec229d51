"""A shell in tmux that is used by keys, and pictures of what it shows."""

import os
import re
import subprocess
import time
import unicodedata

from PIL import Image, ImageDraw, ImageFont

NARROW = ["/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf", "/usr/share/fonts/truetype/dejavu/DejaVuSansMono-Bold.ttf"]
WIDE = ["/usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc", "/usr/share/fonts/opentype/noto/NotoSansCJK-Bold.ttc"]
SIMPLIFIED = 2  # the font of the collection
CELL_WIDTH, CELL_HEIGHT, MARGIN = 13, 30, 20
BASE_LINE = 23
BACKGROUND, FOREGROUND, RED = (30, 33, 39), (220, 223, 228), (240, 113, 120)
PROMPT = "$ "


class Terminal:
    def __init__(self, folder, columns, environment, rows=300):
        self._socket = str(folder / "tmux")
        self._environment = environment
        self._tmux("-f", "/dev/null", "new-session", "-d", "-x", str(columns), "-y", str(rows), "-c", str(folder),
                   "env", f"PS1={PROMPT}", "bash", "--norc", "--noprofile")
        self._tmux("set-option", "-g", "status", "off")
        self._tmux("set-option", "-g", "window-size", "manual")
        self._wait(lambda: self._is_ready(), "a prompt")

    def close(self):
        self._tmux("kill-server")

    def run(self, *lines):
        """Types lines on an empty screen and waits for each to end."""
        self.start()
        for line in lines:
            self.press(line, "Enter")
            self.wait_for_end()

    def start(self, line=None):
        """Empties the screen, and starts a line without waiting for its end."""
        self._tmux("send-keys", "C-l")
        self._wait(lambda: self.text().strip() == PROMPT.strip(), "an empty screen")
        if line:
            self.press(line, "Enter")

    def press(self, text, *keys):
        self._prompts = self._count_prompts()
        self._tmux("send-keys", "-l", "--", text)
        if keys:
            self._tmux("send-keys", *keys)

    def interrupt(self):
        self._tmux("send-keys", "C-c")

    def resize(self, columns):
        self._tmux("resize-window", "-x", str(columns))

    def wait_for(self, pattern):
        self._wait(lambda: re.search(pattern, self.text()), pattern)

    def wait_for_end(self):
        """Waits for the prompt after the line that was typed last."""
        self._wait(lambda: self._is_ready() and self._count_prompts() > self._prompts, "the end")

    def text(self):
        return self._tmux("capture-pane", "-p")

    def picture(self, path):
        save(self._tmux("capture-pane", "-e", "-p"), path)

    def _count_prompts(self):
        return sum(line.startswith(PROMPT.strip()) for line in self.text().split("\n"))

    def _is_ready(self):
        lines = self.text().rstrip("\n ").split("\n")
        return lines[-1] == PROMPT.strip()

    def _wait(self, condition, what, seconds=60):
        end = time.monotonic() + seconds
        while not condition():
            if time.monotonic() > end:
                raise TimeoutError(f"waited in vain for {what}:\n{self.text().rstrip()}")
            time.sleep(0.05)

    def _tmux(self, *words):
        done = subprocess.run(["tmux", "-u", "-S", self._socket, *words], env={**os.environ, **self._environment},
                              check=True, capture_output=True, encoding="utf-8")
        return done.stdout


def save(screen, path):
    """Draws a screen with the sequences for bold and red text, without the empty lines at its end."""
    lines = screen.rstrip("\n").split("\n")
    while lines and not re.sub(r"\x1b\[[\d;]*m|\s", "", lines[-1]):
        lines.pop()
    plain = [re.sub(r"\x1b\[[\d;]*m", "", line) for line in lines]
    columns = max(sum(map(cells, line)) for line in plain)
    image = Image.new("RGB", (columns * CELL_WIDTH + 2 * MARGIN, len(lines) * CELL_HEIGHT + 2 * MARGIN), BACKGROUND)
    draw = ImageDraw.Draw(image)
    fonts = {1: [ImageFont.truetype(name, 22) for name in NARROW],
             2: [ImageFont.truetype(name, 24, index=SIMPLIFIED) for name in WIDE]}
    is_bold, colour = False, FOREGROUND
    for row, line in enumerate(lines):
        column = 0
        for part in re.split(r"(\x1b\[[\d;]*m)", line):
            if part.startswith("\x1b["):
                for code in (part[2:-1] or "0").split(";"):
                    is_bold = code == "1" if code in "01" else is_bold
                    colour = {"0": FOREGROUND, "39": FOREGROUND, "31": RED}.get(code, colour)
                continue
            for letter in part:
                place = (MARGIN + column * CELL_WIDTH, MARGIN + row * CELL_HEIGHT + BASE_LINE)
                width = cells(letter)
                draw.text(place, letter, colour, fonts[width or 1][is_bold], anchor="ls")
                column += width
    image.quantize(64).save(path, optimize=True)


def cells(letter):
    if unicodedata.combining(letter):
        return 0
    return 2 if unicodedata.east_asian_width(letter) in "WF" else 1
