"""What the language bindings' emitters share, between the model and them:
how the catalogue appears to Python (python.py, and its type stubs in
stubs.py) and to C# (csharp.py), and the names both give parameters
(names.py).

These modules read the model and each other, never an emitter; the emitters
read them and the model (tests/layers/check_layers.py holds both to it).
"""
