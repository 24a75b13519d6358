"""Models of the VELM water-quality engine from pandas: velm.create and velm.open give a Model."""

from velm.errors import ArgumentError, ModelError, ProgramError
from velm.model import Model, create, open
from velm.program import VERSION as __version__

__all__ = ["ArgumentError", "Model", "ModelError", "ProgramError", "__version__", "create", "open"]
