// Nothing is missing here.
