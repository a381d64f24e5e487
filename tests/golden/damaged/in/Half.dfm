object F: TF
  object U: TUpdateSQL
  end
  object Q: TQuery
    SQL.Strings = (
      'sel