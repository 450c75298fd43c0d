"""Finds the places of a C++ source that can be changed, with libclang, and what each can be changed into."""

import re
from collections import Counter
from dataclasses import dataclass, field

from clang.cindex import CursorKind as Kind
from clang.cindex import Index

# What an operator becomes. Of comparisons the first is the border, the rest their opposites.
COMPARISONS = {b"<": [b"<=", b">="], b"<=": [b"<", b">"], b">": [b">=", b"<="], b">=": [b">", b"<"],
               b"==": [b"!="], b"!=": [b"=="]}
LOGICAL = {b"&&": b"||", b"||": b"&&"}
ARITHMETIC = {b"+": b"-", b"-": b"+", b"*": b"/", b"/": b"*", b"%": b"/", b"&": b"|", b"|": b"&", b"^": b"&",
              b"<<": b">>", b">>": b"<<"}
ASSIGNMENTS = {b"+=": b"-=", b"-=": b"+=", b"*=": b"/=", b"/=": b"*=", b"%=": b"/=", b"&=": b"|=", b"|=": b"&=",
               b"^=": b"&=", b"<<=": b">>=", b">>=": b"<<="}
STEPS = {b"++": b"--", b"--": b"++"}

STATEMENTS = {Kind.CALL_EXPR, Kind.BINARY_OPERATOR, Kind.COMPOUND_ASSIGNMENT_OPERATOR, Kind.UNARY_OPERATOR,
              Kind.UNEXPOSED_EXPR, Kind.CXX_THROW_EXPR}
LEAPS = {Kind.BREAK_STMT, Kind.CONTINUE_STMT}
FUNCTIONS = {Kind.FUNCTION_DECL, Kind.CXX_METHOD, Kind.CONSTRUCTOR, Kind.DESTRUCTOR, Kind.CONVERSION_FUNCTION,
             Kind.FUNCTION_TEMPLATE}
# Places without a run-time choice, and what they are called in the count of what is left out.
LEFT_OUT = {Kind.STATIC_ASSERT: "static_assert", Kind.PARM_DECL: "default arguments", Kind.ENUM_DECL: "enumerators",
            Kind.CXX_UNARY_EXPR: "sizeof"}
# Calls without which a program does the same in more time.
SAVES_TIME = re.compile(rb"[\w.>()-]+(\.|->)(reserve|shrink_to_fit)\(")


@dataclass
class Mutant:
    """One change. "original" and "replacement" tell it in the list; "text" is what stands in its place."""
    path: str
    function: str
    line: int
    line_text: str
    original: str
    replacement: str
    text: bytes
    number: int = 0
    repetition: int = 1

    @property
    def change(self):
        return f"{self.original} -> {self.replacement}"

    @property
    def key(self):
        """The same after lines were added elsewhere."""
        key = (self.path, self.function, self.line_text, self.change)
        return key if self.repetition == 1 else key + (f"#{self.repetition}",)


@dataclass
class Place:
    """A range of bytes with its mutants. Kinds, from the inside out where two have the same range:
    "expression" has another expression in its place, "void" is an expression that may be left out, "leap" a
    statement that may."""
    start: int
    end: int
    kind: str
    mutants: list = field(default_factory=list)
    is_constexpr: bool = False


@dataclass
class Constant:
    """A variable that is constexpr, and has to be const to be changed at run time."""
    name: str
    start: int
    end: int
    keyword: int
    replacement: bytes


def plain(text):
    return re.sub(r"\s+", " ", text.decode("utf-8", "replace")).strip()


class Finder:
    """The places of one source, after find()."""

    def __init__(self, path, source, arguments, name=None):
        self.path, self.source = str(path), source
        self.name = name or self.path
        self.unit = Index.create().parse(self.path, args=arguments, unsaved_files=[(self.path, source.decode())])
        errors = [str(each) for each in self.unit.diagnostics if each.severity >= 3]
        if errors:
            raise SystemExit(f"{self.name} cannot be read: {errors[0]}")
        self.places, self.constants, self.left_out = {}, [], Counter()
        self.function, self.is_constexpr = "", False
        self.skipped, self.ends_of_functions = set(), set()

    def find(self):
        for cursor in self.unit.cursor.get_children():
            if cursor.location.file and cursor.location.file.name == self.path:
                self.visit(cursor)
        places = sorted(self.places.values(), key=lambda each: (each.start, -each.end))
        if self.name.endswith(".h"):
            places = [each for each in places if not self.is_in_constant(each)]
        seen = Counter()
        for place in places:
            for mutant in place.mutants:
                seen[mutant.key] += 1
                mutant.repetition = seen[mutant.key]
        return places

    def is_in_constant(self, place):
        """Of a header: what includes it may need the constant when it is compiled."""
        is_inside = any(each.start <= place.start < each.end for each in self.constants)
        self.left_out["constants of headers"] += is_inside * len(place.mutants)
        return is_inside

    # ---- where things are

    def text(self, start, end):
        return self.source[start:end]

    def range_of(self, cursor):
        return cursor.extent.start.offset, cursor.extent.end.offset

    def text_of(self, cursor):
        return self.text(*self.range_of(cursor))

    def add(self, start, end, kind, text, replacement, original=None):
        begin = self.source.rfind(b"\n", 0, start) + 1
        finish = self.source.find(b"\n", start)
        place = self.places.setdefault((start, end, kind),
                                       Place(start, end, kind, is_constexpr=self.is_constexpr))
        mutant = Mutant(self.name, self.function, self.source.count(b"\n", 0, start) + 1,
                        plain(self.source[begin:finish]), plain(original or self.text(start, end)),
                        replacement, text)
        if all(mutant.change != each.change for each in place.mutants):
            place.mutants.append(mutant)

    # ---- the walk

    def visit(self, cursor):
        kind = cursor.kind
        if kind in LEFT_OUT:
            if kind != Kind.PARM_DECL or any(each.kind.is_expression() for each in cursor.get_children()):
                self.left_out[LEFT_OUT[kind]] += 1
            return
        if kind.is_expression() and self.range_of(cursor) in self.skipped:
            return
        if kind in FUNCTIONS:
            return self.visit_function(cursor)
        if kind == Kind.VAR_DECL:
            self.note_constant(cursor)
        handler = getattr(self, "at_" + kind.name.lower(), None)
        children = list(cursor.get_children())
        if handler:
            children = handler(cursor, children) or children
        for child in children:
            self.visit(child)

    def visit_function(self, cursor):
        outer = self.function, self.is_constexpr
        parent = cursor.semantic_parent
        owner = parent.spelling + "::" if parent and parent.kind in (Kind.CLASS_DECL, Kind.STRUCT_DECL) else ""
        self.function = owner + cursor.spelling
        start, end = self.range_of(cursor)
        body = self.source.find(b"{", start, end)
        self.is_constexpr = re.search(rb"\bconst(expr|eval)\b", self.text(start, body)) is not None
        children = list(cursor.get_children())
        if children and children[-1].kind == Kind.COMPOUND_STMT and cursor.result_type.spelling not in ("", "void"):
            self.ends_of_functions.update(self.range_of(each) for each in list(children[-1].get_children())[-1:])
        for child in children:
            self.visit(child)
        self.function, self.is_constexpr = outer

    def note_constant(self, cursor):
        start, end = self.range_of(cursor)
        found = re.search(rb"\bconstexpr\b", self.text(start, end).split(b"=")[0])
        if found:
            is_member = cursor.semantic_parent.kind in (Kind.CLASS_DECL, Kind.STRUCT_DECL)
            self.constants.append(Constant(cursor.spelling, start, end, start + found.start(),
                                           b"inline const" if is_member else b"const"))

    # ---- statements

    def at_compound_stmt(self, _, children):
        for child in children:
            self.may_be_left_out(child)

    def at_case_stmt(self, _, children):
        self.left_out["case labels"] += 1
        self.may_be_left_out(children[-1])
        return children[1:]

    def at_default_stmt(self, _, children):
        self.may_be_left_out(children[-1])

    def may_be_left_out(self, cursor):
        start, end = self.range_of(cursor)
        text = self.text(start, end)
        if cursor.kind in LEAPS or text == b"return":
            self.add(start, end, "leap", b"", "(nothing)")
        elif cursor.kind in STATEMENTS:
            if SAVES_TIME.match(text):
                self.left_out["calls that only save time"] += 1
                self.skipped.add((start, end))
                return
            is_throw = re.match(rb"throw\b", text)
            if is_throw:
                self.add(start, end, "void", b"throw mutation::OtherError()", "throw of another type")
            # There would be no result: what a program then does tells nothing of its tests.
            if not (is_throw and (start, end) in self.ends_of_functions):
                self.add(start, end, "void", b"void()", "(nothing)")

    def at_if_stmt(self, cursor, children):
        if re.match(rb"if\s+constexpr\b", self.text_of(cursor)):
            self.left_out["if constexpr"] += 1
            return [each for each in children if not each.kind.is_expression()]
        self.condition(self.between_parentheses(cursor, children))

    def at_while_stmt(self, cursor, children):
        self.condition(self.between_parentheses(cursor, children))

    def at_do_stmt(self, _, children):
        self.condition(children[-1])

    def at_for_stmt(self, cursor, children):
        start = self.range_of(cursor)[0]
        for child in children[:-1]:
            begin, end = self.range_of(child)
            before, behind = self.text(start, begin).rstrip(), self.source[end:].lstrip()[:1]
            if child.kind.is_expression() and before.endswith(b";") and behind == b";":
                self.condition(child)

    def between_parentheses(self, cursor, children):
        """The condition, unless it is a declaration: what ends before the parenthesis that opens with the statement
        closes."""
        start, end = self.range_of(cursor)
        bodies = [each for each in children if each.kind.is_statement()]
        body = self.range_of(bodies[-1])[0] if bodies else end
        for child in children:
            begin, close = self.range_of(child)
            if (child.kind.is_expression() and close <= body and self.source[close:].lstrip()[:1] == b")" and
                    self.text(start, begin).rstrip()[-1:] in b"(;"):
                return child
        return None

    def at_return_stmt(self, _, children):
        if children and children[0].type.get_canonical().spelling == "bool":
            self.negated(children[0])

    def at_conditional_operator(self, _, children):
        self.condition(children[0])

    def condition(self, cursor):
        if cursor is None or cursor.kind == Kind.CXX_BOOL_LITERAL_EXPR:
            return
        start, end = self.range_of(cursor)
        self.negated(cursor)
        for value in (b"true", b"false"):
            self.add(start, end, "expression", value, value.decode())

    def negated(self, cursor):
        start, end = self.range_of(cursor)
        text = self.text(start, end)
        if text not in (b"true", b"false"):
            self.add(start, end, "expression", b"!(" + text + b")", "!(...)")

    # ---- operators

    def at_binary_operator(self, cursor, children):
        if len(children) == 2:
            left, right = self.range_of(children[0]), self.range_of(children[1])
            self.operator(self.range_of(cursor), left[1], right[0])

    at_compound_assignment_operator = at_binary_operator

    def at_call_expr(self, cursor, children):
        """The operators of classes: the place of the operator is that of the reference to its function."""
        if cursor.spelling.startswith("operator") and len(children) > 1:
            at = self.range_of(children[1])[0]
            self.operator(self.range_of(cursor), at, None, COMPARISONS)

    def operator(self, whole, left_end, right_start, tables=None):
        start, end = whole
        if right_start is None:
            found = re.compile(rb"<=>|<=|>=|==|!=|<|>").match(self.source, left_end, end)
            if not found:
                return
            right_start = found.end()
        symbol = self.text(left_end, right_start).strip()
        left, right = self.text(start, left_end).strip(), self.text(right_start, end).strip()
        if not left or not right:
            return
        # "!=" may have been found as the inner "==" of what the compiler made of it.
        for other in COMPARISONS.get(symbol, []):
            self.replace_operator(start, end, left, symbol, other, right)
        if tables is not None:
            return
        for table in (ARITHMETIC, ASSIGNMENTS):
            if symbol in table:
                self.replace_operator(start, end, left, symbol, table[symbol], right)
        if symbol in LOGICAL:
            self.replace_operator(start, end, left, symbol, LOGICAL[symbol], right)
            for kept in (left, right):
                self.add(start, end, "expression", b"static_cast<bool>(" + kept + b")", plain(kept))

    def replace_operator(self, start, end, left, symbol, other, right):
        # What a condition becomes when it is negated is told there.
        if symbol in COMPARISONS and other == COMPARISONS[symbol][-1]:
            place = self.places.get((start, end, "expression"))
            if place and any(each.replacement == "!(...)" for each in place.mutants):
                return
        text = b"(" + left + b") " + other + b" (" + right + b")"
        self.add(start, end, "expression", text, plain(left + b" " + other + b" " + right))

    def at_unary_operator(self, cursor, children):
        start, end = self.range_of(cursor)
        text = self.text(start, end)
        if text[:1] == b"!" and text[:2] != b"!=":
            place = self.places.get((start, end, "expression"))
            if not (place and any(each.replacement == "!(...)" for each in place.mutants)):
                self.add(start, end, "expression", b"!(" + text + b")", "!(...)")
        elif text[:2] in STEPS:
            self.add(start, end, "expression", STEPS[text[:2]] + text[2:], plain(STEPS[text[:2]] + text[2:]))
        elif text[-2:] in STEPS:
            self.add(start, end, "expression", text[:-2] + STEPS[text[-2:]], plain(text[:-2] + STEPS[text[-2:]]))
        elif text.startswith((b"-", b"~")):
            self.add(start, end, "expression", text[1:], plain(text[1:]))

    # ---- constants

    def at_integer_literal(self, cursor, _):
        start, end = self.range_of(cursor)
        found = re.fullmatch(rb"(0[xX][0-9a-fA-F']+|[0-9']+)([uUlLzZ]*)", self.text(start, end))
        if not found:
            return
        digits, suffix = found.group(1).replace(b"'", b""), found.group(2)
        is_hexadecimal = digits[:2].lower() == b"0x"
        value = int(digits, 16 if is_hexadecimal else 10)
        for other in (value + 1, value - 1):
            if other >= 0:
                text = (b"0x%X" if is_hexadecimal else b"%d") % other + suffix
                self.add(start, end, "expression", text, text.decode())

    def at_character_literal(self, cursor, _):
        start, end = self.range_of(cursor)
        text = self.text(start, end)
        if text.endswith(b"'"):
            self.add(start, end, "expression", b"static_cast<decltype(%s)>(%s + 1)" % (text, text),
                     plain(text) + " + 1")

    def at_string_literal(self, cursor, _):
        start, end = self.range_of(cursor)
        found = re.match(rb'(u8|u|U|L)?(R?)"', self.text(start, end))
        if found:
            suffix = re.search(rb'[A-Za-z_]*$', self.text(start, end)).group()
            content = self.text(start, end)[found.end():-1 - len(suffix)]
            other = (found.group(1) or b"") + (b'""' if content else b'"x"') + suffix
            self.add(start, end, "expression", other, plain(other))

    def at_cxx_bool_literal_expr(self, cursor, _):
        start, end = self.range_of(cursor)
        text = self.text(start, end)
        if text in (b"true", b"false"):
            other = b"false" if text == b"true" else b"true"
            self.add(start, end, "expression", other, other.decode())
