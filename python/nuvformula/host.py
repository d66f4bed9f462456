"""Host: the library's instructions as functions."""

import json
import os
import warnings
import weakref

from nuvformula import programs, values
from nuvformula.catalogue import Instruction, UnknownNameError, did_you_mean, python_name
from nuvformula.process import Process, command_of, run_to_end, HostError
from nuvformula.results import FormulaError, FormulaWarning, Picture, Result

ELEMENT_SIZES = {values.BOOLEANS: 1, values.NUMBERS: 8, values.POINTS: 16, values.LINES: 16}


class Family:
    """The instructions of a category, as attributes."""

    def __init__(self, host, functions):
        self._host = host
        self._functions = functions  # identifiers by name

    def __getattr__(self, name):
        if name.startswith("__") or name not in self._functions:
            raise AttributeError(f"no instruction {name}{did_you_mean(name, self._functions)}")
        return self._host._function(self._functions[name])

    def __dir__(self):
        return list(self._functions)


class Host:
    """A running nuvhost, with the library's instructions as functions.

    An instruction goes by its display name, `f.PtsToBestCircle(...)`, with underscores for blanks,
    or as `f[NAME]` by any name that nuvhost takes. Where several share a display name, they go by
    category: `f.Numeric.Multiply`, `f.Array_Number.Multiply`, `f["Numeric: Multiply"]`; or by
    their identifiers, `f._Nuv_Numeric_MultiplyNumbers_`. `help(f.NAME)` tells the rest.

    One result comes as its value, several or none as a Result. A call that fails raises
    FormulaError, a warning is a FormulaWarning. What the library keeps, such as its named data,
    lasts until close() or the end of a `with` block. Threads may share a Host; their calls wait
    for each other.

    nuvhost: the program, or the list of words that start it; otherwise the environment variable
    NUVHOST names it, or it is found on the path. plugin: the library to load, the one beside
    nuvhost unless given.
    """

    def __init__(self, nuvhost=None, plugin=None):
        self._command = command_of(nuvhost)
        if plugin is not None:
            self._command += ["--plugin", os.fspath(plugin)]
        self._functions = {}
        self._pictures = []
        self._instructions = {told["identifier"]: Instruction(told) for told in self._describe()}
        self._named = {}  # names for [..]: identifiers
        self._attributes = {}
        self._families = {}
        for identifier, one in self._instructions.items():
            for name in (one.name, one.full_name, identifier):
                self._named.setdefault(name, []).append(identifier)
            for name in (python_name(one.name), identifier):
                self._attributes.setdefault(name, []).append(identifier)
            family = self._families.setdefault(python_name(one.category), {})
            family[python_name(one.name)] = identifier
        self._process = Process(self._command)
        self._finalizer = weakref.finalize(self, self._process.close)

    def close(self):
        """Ends nuvhost. A second time does nothing."""
        self._process.close()

    def __enter__(self):
        return self

    def __exit__(self, *error):
        self.close()

    def __getitem__(self, name):
        found = self._named.get(name.strip(), [])
        if len(found) == 1:
            return self._function(found[0])
        raise UnknownNameError(self._how_to_name(name, found, self._named))

    def __getattr__(self, name):
        if name.startswith("__") or "_attributes" not in self.__dict__:
            raise AttributeError(name)
        found = self._attributes.get(name, [])
        if len(found) == 1:
            return self._function(found[0])
        if not found and name in self._families:
            return Family(self, self._families[name])
        raise AttributeError(self._how_to_name(name, found, [*self._attributes, *self._families]))

    def __dir__(self):
        plain = [name for name, found in self._attributes.items() if len(found) == 1]
        return [*super().__dir__(), *plain, *self._families]

    def call(self, name, /, *inputs, **named):
        """Calls the instruction of any name and gives the whole Result, with messages, events,
        annotations and log, also where there is just one."""
        function = self[name]
        instruction = self._instructions[function.identifier]
        return self._result(instruction, *self._ask_for(instruction, inputs, named))

    def set(self, angle_unit=None, default_color=None):
        """Sets the unit of angles, "radians" (at the start) or "degrees", and the colour of
        annotations that have none, blue * 65536 + green * 256 + red."""
        given = {"angleUnit": angle_unit,
                 "defaultColor": None if default_color is None
                 else values.integer_to_json(default_color)}
        self._ask({"set": {name: one for name, one in given.items() if one is not None}})

    def picture(self, image=None):
        """A Picture that gathers what is drawn in its `with` block, over an image file (PNG or
        JPEG) where one is named."""
        return Picture(self, image)

    def run(self, program, data=None):
        """Runs an inspection program (docs/programs.md): a file's path, or a dict of the same form.

        data: values in place of the program's data of the same names; the path of a file, as
        pathlib.Path, takes the place of a file. Gives a Run; FormulaError where a step failed,
        ValueError where the program or its data are wrong. It runs in a process of its own.
        """
        return programs.run(self, program, data)

    def _ask(self, request):
        self._process.check()
        with self._process.lock:
            return self._process.ask(request)

    def _describe(self):
        ran = run_to_end([*self._command, "describe", "--all", "--json"], timeout=60)
        try:
            return json.loads(ran.stdout)
        except ValueError:
            told = (ran.stderr or ran.stdout).decode("utf-8", "replace").strip()[:2000]
            raise HostError(f"{self._command[0]} does not describe its instructions; is it "
                            f"nuvhost? It says: {told}") from None

    def _function(self, identifier):
        function = self._functions.get(identifier)
        if function is None:
            function = self._functions[identifier] = self._make(self._instructions[identifier])
        return function

    def _make(self, instruction):
        gives_value = len(instruction.result_kinds) == 1

        def function(*inputs, **named):
            results, answer = self._ask_for(instruction, inputs, named)
            if gives_value and len(answer) == 2:  # the status and the results are all
                return results[0]
            result = self._result(instruction, results, answer)
            return results[0] if gives_value else result

        function.__name__ = function.__qualname__ = python_name(instruction.name)
        function.__doc__ = instruction.documentation()
        function.__signature__ = instruction.signature()
        function.identifier = instruction.identifier
        return function

    def _ask_for(self, instruction, inputs, named):
        """The results of a call and its whole answer."""
        given, constants = instruction.bind(inputs, named)
        request = {"instr": instruction.identifier, "in": given}
        if constants:
            request["const"] = constants
        process = self._process
        process.check()
        with process.lock:
            answer = process.ask(process.request(request, instruction.gives_arrays))
            results = []
            for value, kind in zip(answer["out"], instruction.result_kinds):
                if type(value) is dict and kind in ELEMENT_SIZES:
                    results.append(process.take(value, kind, ELEMENT_SIZES[kind]))
                else:
                    results.append(values.FROM_JSON[kind](value))
        if answer["status"] != 0:
            answer.setdefault("messages", [])  # even a failure in silence is told
        return results, answer

    def _result(self, instruction, results, answer):
        """The Result, once all that the call left is told."""
        result = Result(self, instruction.result_names, results, answer)
        for picture in self._pictures:
            picture.annotations += result.annotations
        self._tell(instruction, result, answer["status"] != 0, stacklevel=4)
        return result

    @staticmethod
    def _tell(instruction, result, failed, stacklevel, where=""):
        """Raises the failure, after the warnings."""
        errors = []
        for message in result.messages:
            message["source"] = values.text_from_json(message["source"])
            message["text"] = values.text_from_json(message["text"])
            if failed and message["severity"] == 2:
                errors.append(message)
            else:
                warnings.warn(f"{where}{message['source']}: {message['text']}", FormulaWarning,
                              stacklevel=stacklevel)
        if not failed:
            return
        source = errors[0]["source"] if errors else instruction.full_name
        why = instruction.told.get("silentFailure")
        text = "\n".join(one["text"] for one in errors) or (
            "failed without a message" + (f", as it does {why}" if why else ""))
        raise FormulaError(where + source, text, result)

    def _draw(self, annotations, image):
        request = {"draw": annotations}
        if image is not None:
            request["image"] = os.path.abspath(image)
        answer = self._ask(request)
        if answer.get("leftOut"):
            warnings.warn(f"the picture leaves out {answer['leftOut']} figures or points whose "
                          "numbers are not finite or beyond 1e9", FormulaWarning, stacklevel=3)
        return answer["svg"]

    def _how_to_name(self, name, found, known):
        if not found:
            return f"no instruction {name!r}{did_you_mean(name, known)}"
        found = [self._instructions[one] for one in found]
        return (f"several instructions are named {name!r}; write one of "
                + ", ".join(f".{python_name(one.category)}.{python_name(one.name)}"
                            for one in found)
                + " or of " + ", ".join(f'["{one.full_name}"]' for one in found))
