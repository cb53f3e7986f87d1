"""The accessibility bus as a screen reader sees it: the objects of a program, and its events."""
import time

from gi.repository import Gio, GLib

ROOT = "/org/a11y/atspi/accessible/root"
REGISTRY = "org.a11y.atspi.Registry"
ACCESSIBLE = "org.a11y.atspi.Accessible"
TABLE = "org.a11y.atspi.Table"
STATES = (
    "invalid active armed busy checked collapsed defunct editable enabled expandable expanded focusable focused "
    "has-tooltip horizontal iconified modal multi-line multiselectable opaque pressed resizable selectable selected "
    "sensitive showing single-line stale transient vertical visible manages-descendants indeterminate required "
    "truncated animated invalid-entry supports-autocompletion selectable-text is-default visited checkable has-popup "
    "read-only").split()
SCREEN = 0


class Bus:
    """A connection to the accessibility bus that the environment's session bus names."""

    def __init__(self):
        session = Gio.bus_get_sync(Gio.BusType.SESSION)
        address = session.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None, None,
                                    Gio.DBusCallFlags.NONE, -1).unpack()[0]
        flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
                 | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
        self.connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        self.events = []

    def call(self, owner, path, interface, method, arguments=None):
        return self.connection.call_sync(owner, path, interface, method, arguments, None,
                                         Gio.DBusCallFlags.NONE, 5000).unpack()

    def listen(self):
        """Keeps every event of every program from now on in `events`."""
        for name in ("object", "focus", "window"):
            self.call(REGISTRY, "/org/a11y/atspi/registry", REGISTRY, "RegisterEvent",
                      GLib.Variant("(s)", (name,)))
        for interface in ("Object", "Focus", "Window"):
            self.connection.signal_subscribe(None, "org.a11y.atspi.Event." + interface, None, None, None,
                                             Gio.DBusSignalFlags.NONE, self._heard)

    def _heard(self, _connection, sender, path, interface, signal, arguments):
        kind, first, second, value = arguments.unpack()[:4]
        self.events.append(Event(Node(self, sender, path), interface.rsplit(".", 1)[1], signal, kind, first,
                                 second, value))

    def settle(self, seconds=0.3):
        """Takes in what has been told, until nothing came for a while."""
        context, end = GLib.MainContext.default(), time.monotonic() + seconds
        while time.monotonic() < end:
            if context.iteration(False):
                end = time.monotonic() + seconds
            else:
                time.sleep(0.01)

    def programs(self):
        return Node(self, REGISTRY, ROOT).children()


class Event:
    def __init__(self, source, group, signal, kind, first, second, value):
        self.source, self.group, self.signal, self.kind = source, group, signal, kind
        self.first, self.second, self.value = first, second, value

    def __repr__(self):
        return "%s:%s:%s(%s, %s, %r) of %s" % (self.group, self.signal, self.kind, self.first, self.second, self.value,
                                               self.source.path)


class Node:
    """An accessible object. What it tells is asked for anew each time."""

    def __init__(self, bus, owner, path):
        self.bus, self.owner, self.path = bus, owner, path

    def __eq__(self, other):
        return (self.owner, self.path) == (other.owner, other.path)

    def __hash__(self):
        return hash((self.owner, self.path))

    def __repr__(self):
        return "%s '%s'" % (self.role, self.name)

    def ask(self, method, arguments=None, interface=ACCESSIBLE):
        return self.bus.call(self.owner, self.path, interface, method, arguments)

    def get(self, property_name, interface=ACCESSIBLE):
        return self.ask("Get", GLib.Variant("(ss)", (interface, property_name)),
                        "org.freedesktop.DBus.Properties")[0]

    def of(self, reference):
        return Node(self.bus, reference[0], reference[1])

    @property
    def name(self):
        return self.get("Name")

    @property
    def description(self):
        return self.get("Description")

    @property
    def role(self):
        return self.ask("GetRoleName")[0]

    @property
    def parent(self):
        return self.of(self.get("Parent"))

    @property
    def states(self):
        low, high = self.ask("GetState")[0]
        bits = low | high << 32
        return {name for at, name in enumerate(STATES) if bits >> at & 1}

    @property
    def interfaces(self):
        return {name.rsplit(".", 1)[1] for name in self.ask("GetInterfaces")[0]}

    def count(self):
        return self.get("ChildCount")

    def child(self, index):
        return self.of(self.ask("GetChildAtIndex", GLib.Variant("(i)", (index,)))[0])

    def children(self):
        return [self.of(reference) for reference in self.ask("GetChildren")[0]]

    def attributes(self):
        return self.ask("GetAttributes")[0]

    def relations(self):
        return [(kind, [self.of(target) for target in targets]) for kind, targets in self.ask("GetRelationSet")[0]]

    def extents(self):
        return self.ask("GetExtents", GLib.Variant("(u)", (SCREEN,)), "org.a11y.atspi.Component")[0]

    def text(self):
        return self.ask("GetText", GLib.Variant("(ii)", (0, -1)), "org.a11y.atspi.Text")[0]

    def value(self):
        return tuple(self.get(name, "org.a11y.atspi.Value")
                     for name in ("MinimumValue", "CurrentValue", "MaximumValue"))

    def act(self, index=0):
        return self.ask("DoAction", GLib.Variant("(i)", (index,)), "org.a11y.atspi.Action")[0]

    def press(self, index=0):
        """As act, without waiting: what is done may show a dialog, and ends with that."""
        self.bus.connection.call(self.owner, self.path, "org.a11y.atspi.Action", "DoAction",
                                 GLib.Variant("(i)", (index,)), None, Gio.DBusCallFlags.NONE, -1, None, None)
        self.bus.settle()

    def write(self, text):
        self.ask("SetTextContents", GLib.Variant("(s)", (text,)), "org.a11y.atspi.EditableText")

    def cell(self, row, column):
        return self.of(self.ask("GetAccessibleAt", GLib.Variant("(ii)", (row, column)), TABLE)[0])

    def rows(self):
        return self.get("NRows", TABLE)

    def walk(self, most=400):
        """The object and all that it holds, of each no more than the first `most`."""
        yield self
        for index in range(min(self.count(), most)):
            yield from self.child(index).walk(most)

    def find(self, role, name=None):
        """The first such object that is on show; None without one."""
        return next((node for node in self.walk() if node.role == role and name in (None, node.name)
                     and "showing" in node.states), None)

    def actions(self):
        return [action[0] for action in self.ask("GetActions", None, "org.a11y.atspi.Action")[0]]
