"""The Formula Library's instructions as Python functions.

    >>> import nuvformula
    >>> f = nuvformula.Host()
    >>> c = f.PtsToBestCircle(points=[(0, 1), (1, 0), (0, -1), (-1, 0)])
    >>> c.diameter, c.center
    (2.0, Point(x=0.0, y=0.0))

It talks to `nuvhost`, which must be there; see help(nuvformula.Host). Points are pairs, arrays
are lists or, where NumPy is installed, NumPy arrays, of shape (n, 2) for points and lines.
"""

from nuvformula.host import Host
from nuvformula.process import HostError
from nuvformula.programs import Run
from nuvformula.results import FormulaError, FormulaWarning, Picture, Result
from nuvformula.values import Line, Point

__all__ = ["FormulaError", "FormulaWarning", "Host", "HostError", "Line", "Picture", "Point",
           "Result", "Run"]
