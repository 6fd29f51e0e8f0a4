"""The fixtures of the package come from its sources here, since it need not be installed."""

pytest_plugins = ["orif.testing"]
