"""Parameter names the bindings give what the catalogue leaves unnamed."""


def unique(name, taken):
    """`name`, with underscores added until it is not in `taken`."""
    while name in taken:
        name += "_"
    return name


def object_param(interface, taken=()):
    """The parameter that names the object a function is called on, after its
    interface (IDocuments -> documents) and unlike the names in `taken`."""
    base = interface.name[1:]
    return unique(base[0].lower() + base[1:], set(taken))
