"""Objects that answer more than one interface, where no signature says so
(catalogue/answers.txt), and the shortest way from the application to each
interface that follows them.

A fact is `Subject answers Interface  # why`: the subject is an interface,
whose objects (some or all, as the reason says) also answer the other, or an
export whose object result, typed IAPIObject, answers it.
"""

import heapq
import re
from dataclasses import dataclass
from pathlib import Path

from .catalogue import CatalogueError

FILE = "answers.txt"
FACT_RE = re.compile(r"^(\w+) answers (\w+)\s+#\s*(\S.*)$")


@dataclass(frozen=True)
class Answer:
    subject: str      # an interface, or an export
    interface: str
    reason: str
    where: str


def load(directory, model):
    """The facts of the catalogue directory, checked against the model."""
    path = Path(directory) / FILE
    if not path.exists():
        return []
    exports = {op.export: op for op in model.ops()}
    facts = []
    for number, raw in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        where, line = f"{path}:{number}", raw.strip()
        if not line or line.startswith("#"):
            continue
        m = FACT_RE.match(line)
        if not m:
            raise CatalogueError(f"{where}: expected 'Subject answers Interface  # why': {line!r}")
        subject, interface, reason = m.groups()
        if interface not in model.interfaces:
            raise CatalogueError(f"{where}: no interface {interface}")
        op = exports.get(subject)
        if op is not None and (op.result.kind, op.result.name) != ("object", "IAPIObject"):
            raise CatalogueError(f"{where}: {subject} returns {op.result}, which says its interface already")
        if op is None and subject not in model.interfaces:
            raise CatalogueError(f"{where}: {subject} is neither an interface nor an export")
        if any((f.subject, f.interface) == (subject, interface) for f in facts):
            raise CatalogueError(f"{where}: {subject} answers {interface} twice")
        facts.append(Answer(subject, interface, reason, where))
    return facts


@dataclass(frozen=True)
class Step:
    """One step of a way: a call (`export`), the same object through another
    interface (`interface`, with the fact's reason), or a handler
    registration whose handler receives the object (`export`, handler=True)."""
    export: str = ""
    interface: str = ""
    reason: str = ""
    handler: bool = False


def _object_names(t):
    name = t.name if t.kind == "object" else t.element
    return [name] if name and name != "IAPIObject" else []


# What a step costs, compared in this order: calls that need another object
# (which the way does not give), calls that need values, calls. A way of
# plain getters thus wins over a shorter one through a search or a copy.
FREE = (0, 0, 0)


def _call_cost(params):
    needs_object = any(p.mode != "out" and _object_names(p.type) for p in params)
    needs_values = any(p.mode != "out" for p in params)
    return (int(needs_object), int(needs_values), 1)


def _edges(model, facts):
    """{interface: [(cost, step, interface reached)]}, in catalogue order."""
    edges = {name: [] for name in model.interfaces}
    by_export = {f.subject: f for f in facts}
    for op in model.ops():
        reached = _object_names(op.result) + [n for p in op.params if p.mode == "out" for n in _object_names(p.type)]
        if op.export in by_export:
            reached.append(by_export[op.export].interface)
        cost = _call_cost(op.params)
        edges[op.interface.name] += [(cost, Step(export=op.export), name) for name in reached]
    for f in facts:
        if f.subject in model.interfaces:
            edges[f.subject].append((FREE, Step(interface=f.interface, reason=f.reason), f.interface))
    for e in model.events():
        if e.source.name in edges:
            for p in e.params:   # a registration takes the handler (and a key): values
                edges[e.source.name] += [((0, 1, 1), Step(export=e.export, handler=True), n)
                                         for n in _object_names(p.type)]
    return edges


def _add(a, b):
    return tuple(x + y for x, y in zip(a, b))


def ways(model, facts):
    """{interface: [Step]}: the cheapest way from the rooted interfaces to
    each interface reached (the rooted ones themselves: no steps), a fact's
    other interface taken at no cost; among equals, the first found in
    catalogue order."""
    edges = _edges(model, facts)
    best, order = {}, 0
    queue = []
    for i in model.interfaces.values():
        if i.root:
            queue.append((FREE, order, i.name, ()))
            order += 1
    while queue:
        cost, _, name, steps = heapq.heappop(queue)
        if name in best:
            continue
        best[name] = list(steps)
        for step_cost, step, reached in edges[name]:
            if reached not in best:
                order += 1
                heapq.heappush(queue, (_add(cost, step_cost), order, reached, steps + (step,)))
    return best
