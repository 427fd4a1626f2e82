"""A user-mode Linux kernel for commands that need namespaces where this machine refuses them."""
