"""Checks the classes, selectors and imports of a program against the list of what the system has."""

from . import known, table


def problems(program, folder=known.FOLDER):
    """Yields a sentence for each class, method or import of the program that is not in the list."""
    types = known.types(folder)
    own = known.own_texts(folder)
    found = list(_methods(program, types))
    exists = {name.removeprefix("@") for name in types}
    found += [f"there is no class {n}" for n in sorted(table.class_names(program) - exists - own)]
    selectors = {method.split()[1] for entry in types.values() for method in entry.methods}
    unknown = table.selectors(program) - selectors - own
    found += [f"no class in the list has the selector {name}" for name in sorted(unknown)]
    return found + list(import_problems(program, folder))


def _methods(program, types):
    records = table.records(program)
    if not records:
        yield "the program's table of methods is missing"
    for record in records:
        method = f"{record.kind} {record.selector}"
        encoding = known.encoding_of(types, record.type, method)
        if record.type not in types:
            yield f"there is no class {record.type}"
        elif encoding is None:
            yield f"{record.type} has no method {method}"
        elif without_directions(encoding) != record.encoding:
            yield f"{record.type} {method} has the types {encoding}, not {record.encoding}"


def without_directions(encoding):
    """Removes in, out, oneway and the like, which only matter to calls between processes."""
    depth, result = 0, ""
    for character in encoding:
        depth += (character in "{[(") - (character in ")]}")
        if depth or character not in "nNoORV":
            result += character
    return result


def import_problems(program, folder=known.FOLDER):
    """The same for the imports alone, of a program without Objective-C."""
    by_path = {library.path: library for library in known.libraries(folder).values()}
    for path in program.libraries:
        if path not in by_path:
            yield f"{path} is no library in the list"
    for symbol in program.imports():
        if not 1 <= symbol.library <= len(program.libraries):
            yield f"{symbol.name} is looked up in no library by name"
            continue
        path = program.libraries[symbol.library - 1]
        if path in by_path and symbol.name not in by_path[path].symbols:
            yield f"{path} has no {symbol.name}"


def unused(programs, folder=known.FOLDER):
    """Yields a sentence for each name, method and type in the list that no program uses."""
    yield from unused_names(programs, known.libraries(folder))
    yield from unused_methods(programs, known.types(folder))


def unused_names(programs, libraries):
    """The same for names of the text stubs, which no program imports."""
    imported = {symbol.name for program in programs for symbol in program.imports()}
    for library in libraries.values():
        for name in sorted(library.symbols.keys() - imported) if library.stub else ():
            yield f"{library.name} is listed with {name}, which is not in use"


def unused_methods(programs, types):
    """The same for methods and types. A program uses a method that it calls, and one that it
    implements or names to the system: a selector that is among its texts, and that it never calls.
    """
    records = [record for program in programs for record in table.records(program)]
    used = {(known.owner_of(types, r.type, f"{r.kind} {r.selector}"), f"{r.kind} {r.selector}")
            for r in records}
    texts = {text for program in programs for text in table.texts(program)}
    named = {f"- {text}" for text in texts - {record.selector for record in records}}
    in_use = {record.type for record in records}
    in_use |= {name for name in types if name.removeprefix("@") in texts}
    for name, entry in types.items():
        for method in entry.methods:
            if (name, method) in used or method in named:
                in_use.add(name)
            else:
                yield f"{name} is listed with {method}, which is not in use"
    waiting = [*in_use]
    while waiting:
        parents = set(types[waiting.pop()].inherits) & types.keys() - in_use
        in_use |= parents
        waiting += parents
    yield from (f"{name} is listed, and not in use" for name in sorted(types.keys() - in_use))
