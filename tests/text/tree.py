"""The files of a source tree, read once."""
import os
import re
import subprocess

CODE = (".cpp", ".h")
# Comments, string and character literals; raw strings are few and need no special care here.
COMMENT = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\'', re.S)
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"]+)[>"]', re.M)


def blank(match):
    """A comment or literal as spaces, lines kept."""
    return re.sub(r"[^\n]", " ", match.group())


class Tree:
    def __init__(self, root):
        self.root = root
        self.paths = sorted(path for path in self._list() if (root / path).is_file())
        self._texts = {}

    def _git(self, *arguments):
        """The NUL-separated answer of git as a list; None where this is no git checkout."""
        command = ["git", "-C", str(self.root)] + list(arguments)
        done = subprocess.run(command, capture_output=True)
        return done.stdout.decode().split("\0")[:-1] if done.returncode == 0 else None

    def _list(self):
        listed = self._git("ls-files", "-z", "--cached", "--others", "--exclude-standard")
        return self._walk() if listed is None or not (self.root / ".git").exists() else set(listed)

    def _walk(self):
        for folder, folders, files in os.walk(self.root):
            folders[:] = [name for name in folders if name not in (".git", "build", "__pycache__")]
            for name in files:
                yield os.path.relpath(os.path.join(folder, name), self.root)

    def changed(self):
        """The files that differ from the last commit or were changed by it; all without git."""
        if not (self.root / ".git").exists():
            return self.paths
        work = self._git("diff", "--name-only", "-z", "HEAD")
        last = self._git("diff-tree", "--no-commit-id", "--name-only", "-r", "-z", "--root", "HEAD")
        new = self._git("ls-files", "-z", "--others", "--exclude-standard")
        if None in (work, last, new):
            return self.paths
        known = set(work) | set(last) | set(new)
        return [path for path in self.paths if path in known]

    def text(self, path):
        """The file's text; None if it holds no text."""
        if path not in self._texts:
            data = (self.root / path).read_bytes()
            self._texts[path] = None if b"\0" in data else data.decode("utf-8", "replace")
        return self._texts[path]

    def code(self, path):
        """A C++ file's text with comments and literals blanked out."""
        return COMMENT.sub(blank, self.text(path))

    def code_paths(self, *folders):
        """The C++ files, all or those directly or deeper under the folders."""
        return [path for path in self.paths if path.endswith(CODE) and
                (not folders or path.startswith(tuple(folder + "/" for folder in folders)))]

    def includes(self, path):
        """(line number, True for <...>, name) of each include directive."""
        text = self.text(path)
        return [(text.count("\n", 0, match.start()) + 1, match.group(1) == "<", match.group(2))
                for match in INCLUDE.finditer(text)]

    def find(self, pattern, path, text):
        """'path:line: what was found' for each place where the pattern matches."""
        return ["%s:%d: %s" % (path, text.count("\n", 0, match.start()) + 1, match.group().strip())
                for match in pattern.finditer(text)]
