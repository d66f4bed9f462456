"""What the library tells of its instructions, under names that Python can write."""

import difflib
import inspect
import keyword
import re

from nuvformula import values


def python_name(name):
    """A name as Python can write it: any run of other characters is one underscore, none at either
    end; a keyword, and what begins with a digit, gets one."""
    text = re.sub(r"\W+", "_", name or "").strip("_") or "unnamed"
    if text[0].isdigit():
        text = "_" + text
    return text + "_" if keyword.iskeyword(text) else text


def python_names(names, taken=()):
    """Names as Python can write them, each different: a second "number" is number_2."""
    given = []
    for name in names:
        base = text = python_name(name)
        if text in taken:
            base = text = text + "_"
        count = 1
        while text in given:
            count += 1
            text = f"{base}_{count}"
        given.append(text)
    return given


class UnknownNameError(KeyError):
    """There is nothing of this name, or more than one; it says what there is."""

    def __str__(self):
        return self.args[0]


class Instruction:
    """One instruction, as `nuvhost describe NAME --json` tells it."""

    def __init__(self, told):
        self.told = told
        self.name = told["name"].strip()
        self.identifier = told["identifier"]
        self.category = told["category"]
        self.full_name = f"{self.category}: {self.name}"
        self.inputs = told["inputs"]
        self.constants = told["constants"]
        self.repeatable = told["repeatable"]
        names = python_names([one["name"] for one in self.inputs]
                             + [one["name"] or one["group"] for one in self.constants])
        self.input_names = names[:len(self.inputs)]
        self.constant_names = names[len(self.inputs):]
        self.result_kinds = [one["type"] for one in told["results"]]
        self.result_names = tuple(one["name"].strip() for one in told["results"])
        self.gives_arrays = any(kind in values.IN_FILES for kind in self.result_kinds)

    def bind(self, inputs, named):
        """The lists "in" and "const" of a call; TypeError and ValueError name the parameter."""
        given = [self._input(position, value) for position, value in enumerate(inputs)]
        constants = []
        for name, value in named.items():
            if name in self.constant_names:
                position = self.constant_names.index(name)
                self._put(constants, position, self._constant(position, value), self.constants)
            elif name in self.input_names:
                position = self.input_names.index(name)
                if position < len(inputs):
                    raise TypeError(f"{self.name}: {name} is given twice")
                if self._is_repeated(position):
                    self._fill(given, position, self.inputs)
                    given[position:] = self._repeated(position, value)
                else:
                    self._put(given, position, self._input(position, value), self.inputs)
            else:
                known = self.input_names + self.constant_names
                raise TypeError(f"{self.name} takes no {name}{did_you_mean(name, known)}; it takes "
                                + (", ".join(known) or "nothing"))
        return given, constants

    def _is_repeated(self, position):
        return self.repeatable and position >= len(self.inputs) - 1

    @staticmethod
    def _fill(given, count, records):
        """Puts the defaults where nothing is given before a position."""
        given.extend(record["default"] for record in records[len(given):count])

    def _put(self, given, position, value, records):
        self._fill(given, position + 1, records)
        given[position] = value

    def _input(self, position, value):
        if position >= len(self.inputs):
            if not self.repeatable:
                raise TypeError(f"{self.name} takes {len(self.inputs)} inputs, and there is one "
                                f"more; it takes {', '.join(self.input_names) or 'none'}")
            position = len(self.inputs) - 1
        return self._converted(self.input_names[position], self.inputs[position]["type"], value)

    def _repeated(self, position, value):
        kind = self.inputs[position]["type"]
        name = self.input_names[position]
        if isinstance(value, (str, bytes, dict)) or not hasattr(value, "__iter__"):
            raise TypeError(f"{self.name}: {name}: expected a list, since it may be repeated")
        return [self._converted(name, kind, one) for one in value]

    def _constant(self, position, value):
        record = self.constants[position]
        name = self.constant_names[position]
        if record["type"] == values.CHOICE:
            for key, label in record["choices"]:
                if value == label or (value == key and not isinstance(value, (bool, str))):
                    return key
            labels = ", ".join(f'"{label}"' for _, label in record["choices"])
            raise ValueError(f"{self.name}: {name}: expected one of {labels}, found {value!r}")
        return self._converted(name, record["type"], value)

    def _converted(self, name, kind, value):
        try:
            return values.TO_JSON[kind](value)
        except (TypeError, ValueError) as error:
            text = f"{self.name}: {name}: {error}"
            raise (TypeError if isinstance(error, TypeError) else ValueError)(text) from None

    def signature(self):
        parameters = []
        for position, (name, record) in enumerate(zip(self.input_names, self.inputs)):
            if self._is_repeated(position):
                parameters.append(inspect.Parameter(name, inspect.Parameter.VAR_POSITIONAL))
            else:
                parameters.append(inspect.Parameter(
                    name, inspect.Parameter.POSITIONAL_OR_KEYWORD, default=default_of(record)))
        for name, record in zip(self.constant_names, self.constants):
            parameters.append(inspect.Parameter(
                name, inspect.Parameter.KEYWORD_ONLY, default=default_of(record)))
        return inspect.Signature(parameters)

    def documentation(self):
        told = self.told
        parts = [told.get("summary") or told["description"] or self.name,
                 f"{self.full_name}, {self.identifier}"]
        for title, names, records in (
                ("Inputs", self.input_names, self.inputs),
                ("Constant parameters, by name alone", self.constant_names, self.constants),
                ("Results", python_names(self.result_names), told["results"])):
            lines = [f"    {name}: {self._about(record)}" for name, record in zip(names, records)]
            if lines:
                parts.append("\n".join([title + ":", *lines]))
        if self.repeatable:
            parts.append(f"The last input may be repeated: by position its values go on, by name\n"
                         f"{self.input_names[-1]} is a list.")
        if told.get("silentFailure"):
            parts.append(f"Fails without a message {told['silentFailure']}.")
        parts.append(f"`nuvhost describe {self.identifier}` tells it in full.")
        return "\n\n".join(parts)

    @staticmethod
    def _about(record):
        text = values.TYPE_NAMES.get(record["type"], "value")
        if "default" in record:
            text += f", {default_of(record)!r} unless given"
        if record.get("choices"):
            text += "; one of " + ", ".join(f'"{label}"' for _, label in record["choices"])
        if record["description"]:
            text += ". " + record["description"]
        return text


def default_of(record):
    """A default as one would write it; that of a choice is its label."""
    default, kind = record["default"], record["type"]
    if kind == values.CHOICE:
        return dict(map(tuple, record["choices"])).get(default, default)
    if kind in (values.POINT, values.LINE):
        return values.FROM_JSON[kind](default)
    return float(default) if kind == values.NUMBER and isinstance(default, str) else default


def did_you_mean(name, known):
    near = difflib.get_close_matches(name, list(known), 3)
    return f"; did you mean {' or '.join(near)}?" if near else ""
