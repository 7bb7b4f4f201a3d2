"""What is raised."""
from ._tables import ERROR_TEXTS, ErrorNumber


class ZQError(Exception):
    """A function of the library failed, or could not be called.

    number: the library's error number, negative (see ErrorNumber)
    name: its name in the C headers, "ZQ_ERR_..."; "unknown" for one that they lack
    text: the condition that it stands for
    function: who reports it
    detail: what is known beyond that, or ""
    """

    def __init__(self, number: int, function: str, detail: str = "") -> None:
        super().__init__(number, function, detail)
        known = number in ERROR_TEXTS
        self.number = number
        self.name = ErrorNumber(number).name if known else "unknown"
        self.text = ERROR_TEXTS[number] if known else "unknown error"
        self.function = function
        self.detail = detail

    def __str__(self) -> str:
        text = f"{self.function}: {self.text} ({self.number}, {self.name})"
        return f"{text}: {self.detail}" if self.detail else text
