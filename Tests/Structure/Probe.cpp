// Nothing of its own: the probe consists of the library that is linked into it whole.
