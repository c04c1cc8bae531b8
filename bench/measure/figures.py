"""Prints costs, and ratios beside their targets."""

import statistics
from collections.abc import Callable

from processes import Cost, median


def ratio(
    costs: list[Cost],
    others: list[Cost],
    value: Callable[[Cost], float] = lambda cost: cost.cpu,
) -> float:
    """The median of the rounds' ratios: within a round the machine was equally busy."""
    return statistics.median(value(one) / value(other) for one, other in zip(costs, others))


def heading(text: str) -> None:
    print(f"\n{text}")
    print("-" * len(text))


def print_costs(costs: dict[str, list[Cost]], count: int) -> None:
    """`count`: the number of files that each program reads."""
    for title, rounds in costs.items():
        cost = median(rounds)
        each = f"{cost.cpu / count * 1e6:9.1f} us CPU a file" if count > 1 else ""
        print(f"{title:<28}{cost.cpu * 1e3:9.1f} ms CPU{cost.wall * 1e3:9.1f} ms wall{each}")


def print_ratio(
    costs: dict[str, list[Cost]],
    peer: str,
    target: float | None = None,
    title: str = "quillmark-cli",
) -> None:
    print_figure(f"{title}: CPU to {peer}", ratio(costs[title], costs[peer]), target)


def print_figure(title: str, value: float, target: float | None = None) -> None:
    beside = "" if target is None else f"   target at most {target:g}"
    print(f"  {title:<46}{value:7.3f}{beside}")
