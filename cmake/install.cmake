# Install rules: the two libraries, the public headers, and what pkg-config and find_package need.
