"""Examples that come with tvapic, each runnable with python3 -m:

    tvapic.examples.drawing_demo    a remote client: draws, saves and reopens through the API Server
    tvapic.examples.inprocess_demo  the object layer in process, against the simulated host
    tvapic.examples.events_demo     event handlers in process: Python functions the host calls
"""
