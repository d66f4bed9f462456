"""What comes of calls: results, failures, pictures."""

import functools

from nuvformula.catalogue import UnknownNameError, python_names


class FormulaError(Exception):
    """An instruction failed. `source` and `text` are those of its first message, or what failed and
    when it does so; `result` is the whole Result of the call."""

    def __init__(self, source, text, result=None):
        super().__init__(f"{source}: {text}")
        self.source = source
        self.text = text
        self.result = result

    def __reduce__(self):
        return type(self), (self.source, self.text)


class FormulaWarning(UserWarning):
    """An instruction warned, or complained and went on."""


class Result:
    """The results of a call: `result.avg_fit_error` or `result["avg fit error"]` by name,
    `result[2]` by position, or all of them one after another.

    `messages`, `events`, `annotations`, `marks` and `log` hold what else the call left, as
    docs/exec.md tells it; `picture()` draws the annotations.
    """

    def __init__(self, host, names, values, answer):
        self._host = host
        self._names = names
        self._values = values
        for member in ("messages", "events", "annotations", "marks", "log"):
            setattr(self, member, answer.get(member, []))

    def picture(self, image=None):
        """What the call drew, over an image file where one is named."""
        return Picture(self._host, image, self.annotations)

    def as_dict(self):
        return dict(zip(self._names, self._values))

    def __getitem__(self, key):
        if not isinstance(key, str):
            return self._values[key]
        if key not in self._names:
            known = ", ".join(map(repr, self._names))
            raise UnknownNameError(f"no result {key!r}; there are {known}")
        return self._values[self._names.index(key)]

    def __getattr__(self, name):
        if not name.startswith("__") and "_names" in self.__dict__:
            names = attribute_names(self._names)
            if name in names:
                return self._values[names.index(name)]
            raise AttributeError(f"no result {name}; there are {', '.join(names) or 'none'}")
        raise AttributeError(name)

    def __iter__(self):
        return iter(self._values)

    def __len__(self):
        return len(self._values)

    def __dir__(self):
        return [*super().__dir__(), *attribute_names(self._names)]

    def __repr__(self):
        names = attribute_names(self._names)
        width = max(map(len, names), default=0)
        return "\n".join(f"{name:{width}}  {_short(value)}"
                         for name, value in zip(names, self._values)) or "<no results>"


TAKEN = {*dir(Result), "messages", "events", "annotations", "marks", "log"}


@functools.lru_cache(maxsize=1024)
def attribute_names(names):
    """Of results: one that a Result has another use for gets an underscore behind it."""
    return python_names(names, TAKEN)


def _short(value):
    text = " ".join(repr(value).split())
    return text if len(text) <= 70 else text[:67] + "..."


class Picture:
    """Annotations, drawn by nuvhost as an SVG picture; a notebook shows it.

    `with host.picture() as picture:` gathers what the calls in the block draw.
    """

    def __init__(self, host, image=None, annotations=()):
        self._host = host
        self._image = image
        self.annotations = list(annotations)

    def __enter__(self):
        self._host._pictures.append(self)
        return self

    def __exit__(self, *error):
        self._host._pictures.remove(self)

    @property
    def svg(self):
        """The picture as a text."""
        return self._host._draw(self.annotations, self._image)

    def save(self, path):
        """Writes the picture to a file."""
        svg = self.svg
        with open(path, "w", encoding="utf-8", newline="\n") as file:
            file.write(svg)

    def _repr_svg_(self):
        return self.svg
