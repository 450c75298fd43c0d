"""Writes a source with all of its mutants in it, each behind a test of a run-time number, so that one build has them
all: "a < b" becomes "(mutant(17) ? (a <= b) : (a < b))"."""

import re
import subprocess
from collections import Counter

from clang.cindex import Index

HEADER = b"""#pragma once
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <type_traits>

namespace mutation {

inline constexpr unsigned kMostMutants = 1U << 20;
inline unsigned number = 0;
inline unsigned char* reached = nullptr;

inline bool mutant(unsigned n) {
    if (reached != nullptr) {
        reached[n] = 1;
    }
    return number == n;
}

/// Nobody waits for it.
struct OtherError {};

/// In functions that may run at compile time.
constexpr bool mutantAtRunTime(unsigned n) { return !std::is_constant_evaluated() && mutant(n); }

/// Before the constants of the sources get their values.
[[gnu::constructor(101)]] inline void begin() {
    const char* const chosen = std::getenv("MUTANT");
    number = chosen != nullptr ? static_cast<unsigned>(std::atol(chosen)) : 0;
    const char* const path = std::getenv("MUTANTS_REACHED");
    if (path == nullptr || reached != nullptr) {
        return;
    }
    const int file = open(path, O_RDWR | O_CLOEXEC);
    if (file < 0) {
        return;
    }
    void* const bytes = mmap(nullptr, kMostMutants, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    (void)close(file);
    reached = bytes != MAP_FAILED ? static_cast<unsigned char*>(bytes) : nullptr;
}

}  // namespace mutation
"""
MOST_MUTANTS = 1 << 20

# How a mutated source is compiled. What is undefined ends the program, as it does where the tests run with sanitizers:
# else the compiler may take for granted that no mutant does it, and leave the mutant out.
BUILD = ["-O1", "-D_GLIBCXX_ASSERTIONS", "-w", "-Wno-c++11-narrowing", "-fsanitize=undefined", "-fno-sanitize=vptr",
         "-fsanitize-trap=undefined", "-fno-delete-null-pointer-checks"]


def precompile(folder, sources, arguments):
    """Compiles once what the sources include of the system, and gives the arguments that take it from there. A
    source is read twice, and most of that time would go into these headers."""
    headers = sorted({each for source in [HEADER, *sources] for each in re.findall(rb"^#include <.+>", source, re.M)})
    header, compiled = folder / "System.h", folder / "System.pch"
    content = b"\n".join(headers) + b"\n"
    if not (compiled.exists() and header.exists() and header.read_bytes() == content):
        header.write_bytes(content)
        plain = [each for each in arguments if each not in ("-x", "c++")]
        subprocess.run(["clang++", "-x", "c++-header", *plain, "-w", header, "-o", compiled], check=True)
    return ["-include-pch", str(compiled)]


# As a compiler that refuses what is no constant, and nothing else.
CHECKS = ["-w", "-Wno-c++11-narrowing", "-Werror=vla", "-Werror=vla-extension", "-ferror-limit=0"]

ORDER = {"expression": 0, "void": 1, "leap": 2}


class Writer:
    """The text of one source; where each place and each mutant stands in it is kept to understand errors."""

    def __init__(self, source, places, constants):
        self.source, self.out, self.length = source, [], 0
        self.spans = []
        kept = [each for each in places if each.mutants]
        self.events = sorted(kept, key=lambda each: (each.start, -each.end, -ORDER[each.kind]))
        self.keywords = {each.keyword: each.replacement for each in constants
                         if any(each.start <= place.start < each.end for place in kept)}

    def put(self, text):
        self.out.append(text)
        self.length += len(text)

    def write(self, header):
        self.put(b'#include "' + header + b'"\n#line 1\n')  # errors of the build tell the lines of the source
        self.index = 0
        self.copy(0, len(self.source))
        return b"".join(self.out)

    def copy(self, start, end):
        """The bytes from start to end, with the places in them."""
        while self.index < len(self.events) and self.events[self.index].start < end:
            place = self.events[self.index]
            self.index += 1
            self.plain_copy(start, place.start)
            begin = self.length
            self.put_place(place)
            self.spans.append((begin, self.length, place, None))
            start = place.end
        self.plain_copy(start, end)

    def plain_copy(self, start, end):
        for keyword in sorted(each for each in self.keywords if start <= each < end):
            self.put(self.source[start:keyword])
            self.put(self.keywords[keyword])
            start = keyword + len(b"constexpr")
        self.put(self.source[start:end])

    def put_place(self, place):
        test = b"mutation::mutantAtRunTime(%d)" if place.is_constexpr else b"mutation::mutant(%d)"
        if place.kind == "leap":
            self.put(b"if (!" + test % place.mutants[0].number + b") ")
            return self.copy(place.start, place.end)
        self.put(b"(")
        for mutant in place.mutants:
            self.put(test % mutant.number + b" ? ")
            begin = self.length
            self.put(b"(" + mutant.text + b")" if mutant.text != b"void()" else mutant.text)
            self.spans.append((begin, self.length, place, mutant))
            self.put(b" : ")
        is_condition = any(each.replacement in ("true", "false", "!(...)") for each in place.mutants)
        self.put(b"void(" if place.kind == "void" else b"static_cast<bool>(" if is_condition else b"(")
        self.copy(place.start, place.end)
        self.put(b"))")


def dropped_at(offset, line, writer, constants):
    """Takes away what an error at that place comes from; False when nothing is known."""
    around = [each for each in writer.spans if each[0] <= offset < each[1]]
    if around:
        _, _, place, mutant = min(around, key=lambda each: each[1] - each[0])
        place.mutants = [] if mutant is None else [each for each in place.mutants if each is not mutant]
        return True
    # A variable that has to be constexpr: its declaration, or where it is used.
    for constant in constants:
        if constant.keyword in writer.keywords and constant.name.encode() in line:
            for _, _, place, mutant in writer.spans:
                if mutant is None and constant.start <= place.start < constant.end:
                    place.mutants = []
            return True
    return False


def write(finder, places, header, arguments):
    """The text of the source with all mutants that a compiler takes, and how many it does not."""
    before = sum(len(each.mutants) for each in places)
    for _ in range(60):
        writer = Writer(finder.source, places, finder.constants)
        text = writer.write(header.encode())
        unit = Index.create().parse(finder.path, args=arguments + CHECKS,
                                    unsaved_files=[(finder.path, text.decode())])
        errors = [each for each in unit.diagnostics if each.severity >= 3]
        if not errors:
            return text, Counter({"no run-time choice": before - sum(len(each.mutants) for each in places)})
        known = False
        for error in errors:
            known |= dropped_from(error, finder.path, text, writer, finder.constants)
        if not known:
            raise SystemExit(f"{finder.name} with its mutants: {errors[0]}")
    raise SystemExit(f"{finder.name}: its mutants cannot be compiled")


def dropped_from(error, path, text, writer, constants):
    """An error, or a note to it, that lies in the source."""
    for each in [error, *error.children]:
        location = each.location
        if location.file and location.file.name == path:
            begin = text.rfind(b"\n", 0, location.offset) + 1
            line = text[begin:text.find(b"\n", location.offset)]
            if dropped_at(location.offset, line, writer, constants):
                return True
    return False
