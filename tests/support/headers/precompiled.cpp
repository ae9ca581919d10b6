// Nothing but the headers that are compiled in advance.
