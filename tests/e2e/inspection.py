"""What a window has to be for somebody who does not see it: rules over the accessibility tree.

An element is what the tree tells of one node at one moment, so the rules are plain functions. Each
names the elements that break it, in sentences.
"""

import dataclasses

from accessibility import PRESSES, Node

PRESSED = {"push button", "toggle button", "radio button", "page tab", "menu item"}
WRITTEN = {"text", "password text"}
STEPPED = {"spin box"}
CONTROLS = PRESSED | WRITTEN | STEPPED
# What is around controls, or is read.
PLACES = {"frame", "dialog", "alert message", "panel", "page tab list", "popup menu", "list",
          "list item"}
READ = {"label", "heading", "notification", "graphic", "indicator", "progress bar"}
NAMED = CONTROLS | READ | {"frame", "dialog", "alert message", "popup menu", "page tab list",
                           "list", "list item"}
# The AtspiRole of a field for a secret; its role's name is that of any field.
PASSWORD_TEXT = 40


@dataclasses.dataclass(frozen=True)
class Element:
    role: str
    name: str
    description: str = ""
    states: frozenset = frozenset()
    actions: tuple = ()
    interfaces: frozenset = frozenset()
    extents: tuple = (0, 0, 1, 1)
    # Where the elements around it stand in the list, the outermost first.
    around: tuple = ()
    node: Node = dataclasses.field(default=None, compare=False)

    def __str__(self):
        return f"{self.role} {self.name!r}"

    @property
    def is_shown(self):
        return {"visible", "showing"} <= self.states

    @property
    def is_enabled(self):
        return {"enabled", "sensitive"} <= self.states

    @property
    def can_be_pressed(self):
        return any(action in PRESSES for action in self.actions)

    @property
    def is_control(self):
        """What it is by what can be done with it, whatever its role says."""
        return self.can_be_pressed or "EditableText" in self.interfaces or self.role in CONTROLS

    def overlaps(self, window):
        """Whether any of it lies within the window."""
        left, top, width, height = self.extents
        x, y, across, down = window
        return left < x + across and left + width > x and top < y + down and top + height > y

    def lies_within(self, window):
        left, top, width, height = self.extents
        x, y, across, down = window
        return x <= left and y <= top and left + width <= x + across and top + height <= y + down


def of(node, around=()):
    """What the tree tells of one node now."""
    interfaces = node.interfaces
    role = "password text" if node.role_number == PASSWORD_TEXT else node.role
    return Element(role=role, name=node.name, description=node.description,
                   states=frozenset(node.states), interfaces=frozenset(interfaces),
                   actions=tuple(node.actions) if "Action" in interfaces else (),
                   extents=tuple(node.extents), around=around, node=node)


def read(node, around=(), elements=None):
    """All that is not hidden below a node, in reading order."""
    elements = [] if elements is None else elements
    for child in node.children:
        if child.has("visible"):
            place = len(elements)
            elements.append(of(child, around))
            read(child, (*around, place), elements)
    return elements


def every(node):
    """Each node below one, hidden or not, in reading order."""
    for child in node.children:
        yield child
        yield from every(child)


def nameless(elements):
    return [f"{element} at {element.extents} has no name" for element in elements
            if not element.name.strip() and (element.role in NAMED or element.is_control)]


def roles_that_say_nothing(elements):
    faults = []
    for element in elements:
        if element.can_be_pressed and element.role not in PRESSED:
            faults.append(f"{element} can be pressed and does not say so")
        elif "EditableText" in element.interfaces and element.role not in WRITTEN:
            faults.append(f"{element} can be written in and does not say so")
        elif element.role not in CONTROLS | PLACES | READ:
            faults.append(f"{element} has a role that says nothing")
    return faults


def unpressable(elements):
    return [f"{element} cannot be pressed" for element in elements
            if element.role in PRESSED and not element.can_be_pressed] + [
        f"{element} cannot be written in" for element in elements
        if element.role == "text" and "read only" not in element.states
        and not {"EditableText", "Text"} <= element.interfaces] + [
        f"{element} cannot be stepped" for element in elements
        if element.role in STEPPED and not {"Increase", "Decrease"} <= set(element.actions)]


def wrongly_enabled(elements, disabled):
    """`disabled` holds the names of those that cannot be used now; all others can."""
    faults = [f"there is no control {name!r}" for name in disabled
              if not any(element.is_control and element.name == name for element in elements)]
    for element in elements:
        if not element.is_control:
            continue
        if element.name in disabled:
            if {"enabled", "sensitive", "focusable"} & element.states:
                faults.append(f"{element} is told as usable and is not")
        elif not element.is_enabled:
            faults.append(f"{element} is told as disabled and is not")
    return faults


def hidden_ones(elements):
    return [f"{element} is told as visible and as not showing" for element in elements
            if not element.is_shown]


def without_extent(elements):
    return [f"{element} has no extent: {element.extents}" for element in elements
            if min(element.extents[2:]) <= 0 and element.role not in PLACES]


def twins(elements):
    """Controls that nothing tells apart: of one role and name, with the same names around them."""
    seen, faults = set(), []
    for element in elements:
        if not element.is_control:
            continue
        around = tuple(str(elements[place]) for place in element.around if elements[place].name)
        if (around, str(element)) in seen:
            faults.append(f"{element} is there twice in {' > '.join(around)}")
        seen.add((around, str(element)))
    return faults


def focused_twice(elements):
    focused = [element for element in elements if "focused" in element.states]
    return [f"{' and '.join(map(str, focused))} have the focus"] if len(focused) > 1 else []


def faults(elements, disabled=()):
    """All that is wrong with a window that shows these elements."""
    return [*nameless(elements), *roles_that_say_nothing(elements), *unpressable(elements),
            *wrongly_enabled(elements, disabled), *hidden_ones(elements),
            *without_extent(elements), *twins(elements), *focused_twice(elements)]


def disorder(stops):
    """Where a way of Tab goes back: each stop is the control that is left, with the one that is
    reached, both as they lie on the screen once it is reached. Lines are read from left to right,
    one below the other."""
    faults = []
    for left, reached in stops:
        top, bottom = left.extents[1], left.extents[1] + left.extents[3]
        middle = reached.extents[1] + reached.extents[3] / 2
        if middle < top or (middle <= bottom and reached.extents[0] < left.extents[0]):
            faults.append(f"Tab goes back from {left} to {reached}")
    return faults
