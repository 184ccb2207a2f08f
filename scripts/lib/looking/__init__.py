"""What scripts/looks is made of."""
