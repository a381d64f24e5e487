object F: TF
  object Q: TQuery
    SQL.Strings = (
      'sel