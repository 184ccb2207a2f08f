"""What the long runs of scripts/soak are made of."""
