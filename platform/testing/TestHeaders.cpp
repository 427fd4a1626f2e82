// Nothing of its own: the test library's headers are precompiled with it.
