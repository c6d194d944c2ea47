"""Runs the commands that documents show, with the programs of a build, against a demo server.

    python3 run-commands.py ADDRESS DOCUMENT...

Each document's blocks marked `console` are one session in a folder of its own, at the server with this address. A command has
to end with the status that the document shows, and its lines on the error stream that begin with the program's name have to be
those of the document, numbers aside. A file that the document shows by `cat` is there.
"""
import os
import re
import subprocess
import sys
import tempfile

DOCUMENTED_ADDRESS = re.compile(r"127\.76\.\d+\.\d+")
STATUS = re.compile(r"\[exit status (\d+)\]\n?")


class Step:
    def __init__(self, command):
        self.command = command
        self.output = ""
        self.status = 0

    def remarks(self, output):
        """What the program says of its own. How a name is not found differs from one resolver to another."""
        lines = [line for line in output.splitlines() if line.startswith("cimhttp: ") and ".invalid" not in line]
        return [re.sub(r"\d+", "N", line) for line in lines]


def steps(text):
    for block in re.findall(r"^```console\n(.*?)```", text, re.DOTALL | re.MULTILINE):
        step = None
        for line in block.splitlines(keepends=True):
            status = STATUS.fullmatch(line)
            if line.startswith("$ "):
                if step:
                    yield step
                step = Step(line[2:].rstrip("\n"))
            elif status:
                step.status = int(status.group(1))
            else:
                step.output += line
        if step:
            yield step


def is_for_the_demo_server(step):
    return re.search(r"\bcimhttp\b|\bcat\b|\bhead\b", step.command) is not None and "time " not in step.command


def run(document, address):
    """The faults of a document, and how many commands it has."""
    faults = []
    count = 0
    with open(document, encoding="utf-8") as file:
        text = DOCUMENTED_ADDRESS.sub(address, file.read())
    with tempfile.TemporaryDirectory() as folder:
        environment = dict(os.environ, HOME=folder, XDG_CONFIG_HOME=folder + "/config")
        for step in filter(is_for_the_demo_server, steps(text)):
            count += 1
            shown = re.fullmatch(r"cat (\S+)", step.command)
            if shown and not os.path.exists(os.path.join(folder, shown.group(1))):
                with open(os.path.join(folder, shown.group(1)), "w", encoding="utf-8") as file:
                    file.write(step.output)
            done = subprocess.run(["bash", "-c", step.command], cwd=folder, env=environment, timeout=120, check=False,
                                  stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                  encoding="utf-8", errors="replace")
            if done.returncode != step.status or step.remarks(done.stdout) != step.remarks(step.output):
                faults.append(f"{document}: $ {step.command}\n{done.stdout}[exit status {done.returncode}]\n"
                              f"  shown there:\n{step.output}[exit status {step.status}]")
    return faults, count


def main():
    address, *documents = sys.argv[1:]
    faults = []
    for document in documents:
        found, count = run(document, address)
        if not count:
            found = [f"{document} shows no command"]
        print(f"{document}: {count} commands, {len(found)} not as shown")
        faults += found
    print("\n".join(faults), file=sys.stderr, end="\n" if faults else "")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
